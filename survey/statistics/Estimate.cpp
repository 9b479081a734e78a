#include "survey/statistics/Estimate.h"

#include <cmath>
#include <limits>
#include <vector>

#include "survey/statistics/Significance.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {

Estimate estimateOf(std::span<const double> values) {
  const TrimmedMean mean = trimmedMean(values);
  return {mean.mean, {mean.variance(), mean.freedom()}, values.size()};
}

void shareVariances(std::span<Estimate> estimates) {
  std::vector<Variance> ofValues;
  for (const Estimate& estimate : estimates) {
    const auto& [value, freedom] = estimate.variance;
    if (freedom > 0) {
      ofValues.push_back({value * static_cast<double>(estimate.values), freedom});
    }
  }
  const Variance common = commonVariance(ofValues);
  auto own = ofValues.begin();
  for (Estimate& estimate : estimates) {
    if (estimate.variance.freedom > 0) {
      const Variance shared = moderated(*own++, common);
      estimate.variance = {shared.value / static_cast<double>(estimate.values), shared.freedom};
    }
  }
}

Estimate difference(const Estimate& newer, const Estimate& base) {
  const double mean = newer.mean - base.mean;
  const double variance = newer.variance.value + base.variance.value;
  if (!(newer.variance.freedom > 0) || !(base.variance.freedom > 0)) {
    return {mean, {variance, 0}};
  }
  const auto part = [](const Variance& own) { return own.value * own.value / own.freedom; };
  const double parts = part(newer.variance) + part(base.variance);
  return {mean,
          {variance,
           parts > 0 ? variance * variance / parts : std::numeric_limits<double>::infinity()}};
}

Interval intervalOf(const Estimate& estimate, double confidence) {
  const double reach = estimate.variance.freedom > 0
                           ? std::sqrt(estimate.variance.value) *
                                 criticalValue(1 - confidence, estimate.variance.freedom)
                           : std::numeric_limits<double>::infinity();
  return {estimate.mean - reach, estimate.mean, estimate.mean + reach};
}

}  // namespace survey
