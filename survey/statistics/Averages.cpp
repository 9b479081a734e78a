#include "survey/statistics/Averages.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace survey {

double mean(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double quantile(std::vector<double> values, double part) {
  const double place = part * static_cast<double>(values.size() - 1);
  const auto below = static_cast<std::ptrdiff_t>(place);
  const auto at = values.begin() + below;
  std::nth_element(values.begin(), at, values.end());
  if (at + 1 == values.end()) {
    return *at;
  }
  return std::lerp(*at, *std::min_element(at + 1, values.end()),
                   place - static_cast<double>(below));
}

double median(std::vector<double> values) {
  return quantile(std::move(values), 0.5);
}

}  // namespace survey
