#include "survey/statistics/Location.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include <boost/math/distributions/students_t.hpp>

#include "survey/statistics/Quantiles.h"

namespace survey {
namespace {

constexpr std::size_t kFewestForRanks = 6;

/// The means of all pairs of values, each with itself included, in ascending order.
std::vector<double> walshAverages(std::span<const double> values) {
  std::vector<double> averages;
  averages.reserve(values.size() * (values.size() + 1) / 2);
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = i; j < values.size(); ++j) {
      averages.push_back(std::midpoint(values[i], values[j]));
    }
  }
  std::sort(averages.begin(), averages.end());
  return averages;
}

/// The probability of each sum of the positive ranks, 0 to count * (count + 1) / 2.
std::vector<double> signedRankProbabilities(std::size_t count) {
  std::vector<double> probabilities(count * (count + 1) / 2 + 1, 0);
  probabilities[0] = 1;
  for (std::size_t rank = 1; rank <= count; ++rank) {
    for (std::size_t sum = probabilities.size(); sum-- > 0;) {
      const double without = probabilities[sum];
      const double with = sum >= rank ? probabilities[sum - rank] : 0;
      probabilities[sum] = (without + with) / 2;
    }
  }
  return probabilities;
}

Interval locateByRanks(std::span<const double> values, double confidence) {
  const std::vector<double> averages = walshAverages(values);
  const std::vector<double> probabilities = signedRankProbabilities(values.size());
  // The interval leaves out so many averages at either end.
  std::size_t left = 0;
  for (double tail = probabilities[0]; 2 * tail <= 1 - confidence; tail += probabilities[left]) {
    ++left;
  }
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (left == 0) {  // even all of them are not sure enough
    return {-kInfinity, median(averages), kInfinity};
  }
  return {averages[left - 1], median(averages), averages[averages.size() - left]};
}

double mean(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double standardError(std::span<const double> values) {
  const double middle = mean(values);
  double squares = 0;
  for (const double value : values) {
    squares += (value - middle) * (value - middle);
  }
  const auto count = static_cast<double>(values.size());
  return std::sqrt(squares / (count - 1) / count);
}

boost::math::students_t studentsT(std::span<const double> values) {
  return {static_cast<double>(values.size() - 1)};
}

}  // namespace

Interval locate(std::span<const double> values, double confidence) {
  if (values.size() >= kFewestForRanks) {
    return locateByRanks(values, confidence);
  }
  const double middle = mean(values);
  if (values.size() == 1) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return {-kInfinity, middle, kInfinity};
  }
  const double reach =
      standardError(values) * boost::math::quantile(studentsT(values), (1 + confidence) / 2);
  return {middle - reach, middle, middle + reach};
}

double probabilityOfNoEffect(std::span<const double> values) {
  if (values.size() < 2) {
    return 1;
  }
  if (values.size() < kFewestForRanks) {
    const double error = standardError(values);
    if (error == 0) {
      return mean(values) == 0 ? 1 : 0;
    }
    return 2 * boost::math::cdf(studentsT(values), -std::abs(mean(values)) / error);
  }
  // The sum of the ranks on the smaller side is the number of averages on that side.
  const std::vector<double> averages = walshAverages(values);
  const auto [zeros, positive] = std::equal_range(averages.begin(), averages.end(), 0.0);
  const std::size_t smaller =
      std::min<std::size_t>(positive - averages.begin(), averages.end() - zeros);
  const std::vector<double> probabilities = signedRankProbabilities(values.size());
  const double tail = std::accumulate(
      probabilities.begin(), probabilities.begin() + static_cast<std::ptrdiff_t>(smaller) + 1, 0.0);
  return std::min(1.0, 2 * tail);
}

}  // namespace survey
