#include "survey/statistics/TrimmedMean.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "survey/statistics/EffectiveSize.h"

namespace survey {
namespace {

constexpr std::size_t kTrimmedPart = 5;  // a fifth at either end

double varianceOf(const std::vector<double>& pulls, double kept) {
  const double squares = std::inner_product(pulls.begin(), pulls.end(), pulls.begin(), 0.0);
  return kept < 2 ? std::numeric_limits<double>::infinity() : squares * kept / (kept - 1);
}

}  // namespace

double TrimmedMean::variance() const {
  return varianceOf(pulls, static_cast<double>(kept));
}

TrimmedMean trimmedMean(std::span<const double> values) {
  std::vector<double> sorted(values.begin(), values.end());
  std::sort(sorted.begin(), sorted.end());
  const std::size_t trimmed = sorted.size() / kTrimmedPart;
  const auto first = sorted.begin() + static_cast<std::ptrdiff_t>(trimmed);
  const auto end = sorted.end() - static_cast<std::ptrdiff_t>(trimmed);

  TrimmedMean result;
  result.kept = static_cast<std::size_t>(end - first);
  const auto kept = static_cast<double>(result.kept);
  result.mean = std::accumulate(first, end, 0.0) / kept;
  double winsorizedMean = 0;
  for (const double value : values) {
    result.pulls.push_back(std::clamp(value, *first, *(end - 1)));
    winsorizedMean += result.pulls.back() / static_cast<double>(values.size());
  }
  for (double& pull : result.pulls) {
    pull = (pull - winsorizedMean) / kept;
  }
  return result;
}

void JointMean::add(const TrimmedMean& mean, std::span<const std::size_t> places) {
  const auto values = static_cast<double>(places.size());
  count_ += 1;
  sum_ += mean.mean;
  values_ += values;
  keptValues_ += static_cast<double>(mean.kept);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::size_t size = std::max(pulls_.size(), places[i] + 1);
    pulls_.resize(size, 0.0);
    shares_.resize(size, 0.0);
    pulls_[places[i]] += mean.pulls[i];
    shares_[places[i]] += 1 / values;
  }
}

double JointMean::kept() const {
  return effectiveSize(shares_) * keptValues_ / values_;
}

double JointMean::mean() const {
  return sum_ / count_;
}

double JointMean::freedom() const {
  return kept() - 1;
}

double JointMean::variance() const {
  return varianceOf(pulls_, kept()) / (count_ * count_);
}

}  // namespace survey
