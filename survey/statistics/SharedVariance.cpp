#include "survey/statistics/SharedVariance.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <boost/math/special_functions/digamma.hpp>
#include <boost/math/special_functions/polygamma.hpp>
#include <boost/math/special_functions/trigamma.hpp>

namespace survey {
namespace {

using boost::math::digamma;
using boost::math::trigamma;

/// Fewer variances say too little of what they have in common.
constexpr std::size_t kFewest = 4;
/// Values that are all the same have no logarithm of their variance.
constexpr double kLeastVariance = 1e-16;

/// Newton's method on the reciprocal, as in Smyth's appendix: it converges from this start.
double inverseOfTrigamma(double value) {
  constexpr int kTurns = 50;
  constexpr double kNear = 1e-10;
  double x = 0.5 + 1 / value;
  for (int turn = 0; turn < kTurns; ++turn) {
    const double there = trigamma(x);
    const double step = there * (1 - there / value) / boost::math::polygamma(2, x);
    x += step;
    if (-step / x < kNear) {
      break;
    }
  }
  return x;
}

}  // namespace

Variance commonVariance(std::span<const Variance> variances) {
  const auto count = static_cast<double>(variances.size());
  if (variances.size() < kFewest) {
    return {0, 0};
  }
  const auto logarithm = [](const Variance& variance) {
    const double half = variance.freedom / 2;
    return std::log(std::max(variance.value, kLeastVariance)) - digamma(half) + std::log(half);
  };
  double mean = 0;
  for (const Variance& variance : variances) {
    mean += logarithm(variance) / count;
  }
  double excess = 0;  // of the scatter over what chance alone gives
  for (const Variance& variance : variances) {
    excess += std::pow(logarithm(variance) - mean, 2) / (count - 1) -
              trigamma(variance.freedom / 2) / count;
  }
  if (excess <= 0) {
    return {std::exp(mean), std::numeric_limits<double>::infinity()};
  }
  const double half = inverseOfTrigamma(excess);
  return {std::exp(mean + digamma(half) - std::log(half)), 2 * half};
}

Variance moderated(const Variance& own, const Variance& common) {
  if (std::isinf(common.freedom)) {
    return common;
  }
  const double freedom = own.freedom + common.freedom;
  return {(own.freedom * own.value + common.freedom * common.value) / freedom, freedom};
}

}  // namespace survey
