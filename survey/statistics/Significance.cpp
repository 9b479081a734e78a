#include "survey/statistics/Significance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

#include <boost/math/distributions/students_t.hpp>

namespace survey {

double criticalValue(double probability, double freedom) {
  if (!(freedom > 0)) {
    return std::numeric_limits<double>::infinity();
  }
  return boost::math::quantile(
      boost::math::complement(boost::math::students_t(freedom), probability));
}

double probabilityAbove(double value, double freedom) {
  if (!(freedom > 0)) {
    return 1;
  }
  return boost::math::cdf(boost::math::complement(boost::math::students_t(freedom), value));
}

std::vector<bool> positives(std::span<const double> probabilities, double level) {
  std::vector<std::size_t> order(probabilities.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return probabilities[a] < probabilities[b]; });
  std::vector<bool> positive(probabilities.size(), false);
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (probabilities[order[i]] > level / static_cast<double>(order.size() - i)) {
      break;
    }
    positive[order[i]] = true;
  }
  return positive;
}

}  // namespace survey
