#include "survey/statistics/Estimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
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
  // All of them together know no more than this.
  const double most =
      std::accumulate(ofValues.begin(), ofValues.end(), 0.0,
                      [](double sum, const Variance& own) { return sum + own.freedom; });
  auto own = ofValues.begin();
  for (Estimate& estimate : estimates) {
    if (estimate.variance.freedom > 0) {
      const Variance shared = moderated(*own++, common);
      estimate.variance = {shared.value / static_cast<double>(estimate.values),
                           std::min(shared.freedom, most)};
    }
  }
}

Estimate difference(const Estimate& newer, const Estimate& base) {
  const Estimate opposite{-base.mean, base.variance, base.values};
  const auto [mean, variance, values] = meanOf(std::array{newer, opposite});
  return {2 * mean, {4 * variance.value, variance.freedom}};
}

Estimate meanOf(std::span<const Estimate> estimates) {
  const auto count = static_cast<double>(estimates.size());
  Estimate result;
  double parts = 0;
  double freedoms = 0;
  for (const auto& [mean, variance, values] : estimates) {
    result.mean += mean / count;
    const double share = variance.value / (count * count);
    result.variance.value += share;
    parts += share * share / variance.freedom;
    freedoms += variance.freedom;
  }
  const bool isKnown =
      std::all_of(estimates.begin(), estimates.end(),
                  [](const Estimate& estimate) { return estimate.variance.freedom > 0; });
  // Where nothing scatters, all that is known of that comes together.
  result.variance.freedom = !isKnown    ? 0
                            : parts > 0 ? result.variance.value * result.variance.value / parts
                                        : freedoms;
  return result;
}

Interval exponential(const Interval& logarithms) {
  return {std::exp(logarithms.low), std::exp(logarithms.middle), std::exp(logarithms.high)};
}

Interval intervalOf(const Estimate& estimate, double confidence) {
  const double reach = estimate.variance.freedom > 0
                           ? std::sqrt(estimate.variance.value) *
                                 criticalValue((1 - confidence) / 2, estimate.variance.freedom)
                           : std::numeric_limits<double>::infinity();
  return {estimate.mean - reach, estimate.mean, estimate.mean + reach};
}

}  // namespace survey
