#include "survey/statistics/Estimate.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "survey/statistics/StudentsT.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {

Estimate estimateOf(std::span<const double> values) {
  const TrimmedMean mean = trimmedMean(values);
  return {mean.mean, {mean.variance(), mean.freedom()}, mean.kept};
}

Estimate plainEstimateOf(std::span<const double> values) {
  const auto count = static_cast<double>(values.size());
  const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
  double squares = 0;
  for (const double value : values) {
    squares += (value - mean) * (value - mean);
  }
  return {mean, {squares / (count - 1) / count, count - 1}, values.size()};
}

void shareVariances(std::span<Estimate> estimates) {
  std::vector<Variance> ofValues;
  for (const Estimate& estimate : estimates) {
    const auto& [value, freedom] = estimate.variance;
    if (freedom > 0) {
      ofValues.push_back({value * static_cast<double>(estimate.kept), freedom});
    }
  }
  const Variance common = commonVariance(ofValues);
  auto own = ofValues.begin();
  for (Estimate& estimate : estimates) {
    if (estimate.variance.freedom > 0) {
      const Variance shared = moderated(*own++, common);
      estimate.variance = {shared.value / static_cast<double>(estimate.kept), shared.freedom};
    }
  }
}

Estimate sum(const Estimate& one, const Estimate& other) {
  const double mean = one.mean + other.mean;
  const double variance = one.variance.value + other.variance.value;
  if (!(one.variance.freedom > 0) || !(other.variance.freedom > 0)) {
    return {mean, {variance, 0}};
  }
  const auto part = [](const Variance& own) { return own.value * own.value / own.freedom; };
  const double parts = part(one.variance) + part(other.variance);
  return {mean,
          {variance,
           parts > 0 ? variance * variance / parts : std::numeric_limits<double>::infinity()}};
}

Estimate difference(const Estimate& newer, const Estimate& base) {
  Estimate negative = base;
  negative.mean = -base.mean;
  return sum(newer, negative);
}

Interval intervalOf(const Estimate& estimate, double confidence) {
  const double reach = estimate.variance.freedom > 0
                           ? std::sqrt(estimate.variance.value) *
                                 criticalValue(1 - confidence, estimate.variance.freedom)
                           : std::numeric_limits<double>::infinity();
  return {estimate.mean - reach, estimate.mean, estimate.mean + reach};
}

}  // namespace survey
