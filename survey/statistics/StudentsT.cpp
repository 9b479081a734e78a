#include "survey/statistics/StudentsT.h"

#include <cmath>
#include <limits>

#include <boost/math/distributions/students_t.hpp>

namespace survey {

double criticalValue(double probability, double freedom) {
  if (!(freedom > 0)) {
    return std::numeric_limits<double>::infinity();
  }
  return boost::math::quantile(
      boost::math::complement(boost::math::students_t(freedom), probability / 2));
}

double twoSidedProbability(double value, double freedom) {
  if (!(freedom > 0)) {
    return 1;
  }
  return 2 * boost::math::cdf(boost::math::students_t(freedom), -std::abs(value));
}

}  // namespace survey
