#include "survey/statistics/TrimmedMean.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace survey {
namespace {

constexpr std::size_t kTrimmedPart = 5;  // a fifth at either end

}  // namespace

double TrimmedMean::variance() const {
  const double squares = std::inner_product(pulls.begin(), pulls.end(), pulls.begin(), 0.0);
  return kept < 2 ? std::numeric_limits<double>::infinity()
                  : squares * static_cast<double>(kept) / freedom();
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
  const auto kept = static_cast<double>(mean.kept);
  count_ += 1;
  sum_ += mean.mean;
  freedom_.add(places.size(), mean.freedom());
  for (std::size_t i = 0; i < places.size(); ++i) {
    pulls_.resize(std::max(pulls_.size(), places[i] + 1), 0.0);
    pulls_[places[i]] += mean.pulls[i] * std::sqrt(kept / (kept - 1));
  }
}

double JointMean::mean() const {
  return sum_ / count_;
}

double JointMean::variance() const {
  return std::inner_product(pulls_.begin(), pulls_.end(), pulls_.begin(), 0.0) / (count_ * count_);
}

}  // namespace survey
