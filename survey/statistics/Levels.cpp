#include "survey/statistics/Levels.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <vector>

#include "survey/statistics/Averages.h"

namespace survey {
namespace {

constexpr std::size_t kFewest = 8;
constexpr double kLeastDeviation = 1e-6;  // of values that are all the same
constexpr double kLeastStepInDeviations = 4;

double logDensity(double value, double level, double deviation) {
  const double distance = (value - level) / deviation;
  return -distance * distance / 2 - std::log(deviation * std::sqrt(2 * std::numbers::pi));
}

double deviationAround(std::span<const double> values, double middle) {
  double squares = 0;
  for (const double value : values) {
    squares += (value - middle) * (value - middle);
  }
  return std::max(std::sqrt(squares / static_cast<double>(values.size())), kLeastDeviation);
}

/// The fit that expectation and maximisation come to from there.
TwoLevels improved(TwoLevels fit, std::span<const double> values) {
  constexpr int kTurns = 50;
  const auto count = static_cast<double>(values.size());
  for (int turn = 0; turn < kTurns; ++turn) {
    double ofHigh = 0;
    double high = 0;
    double low = 0;
    double squares = 0;
    for (const double value : values) {
      const double part = fit.probabilityOfHigh(value);
      ofHigh += part;
      high += part * value;
      low += (1 - part) * value;
      squares += part * std::pow(value - fit.high, 2) + (1 - part) * std::pow(value - fit.low, 2);
    }
    if (ofHigh <= 0 || ofHigh >= count) {
      break;
    }
    fit = {low / (count - ofHigh), high / ofHigh,
           std::max(std::sqrt(squares / count), kLeastDeviation), ofHigh / count};
  }
  return fit;
}

double logLikelihood(const TwoLevels& fit, std::span<const double> values) {
  double sum = 0;
  for (const double value : values) {
    sum += std::log(fit.shareOfHigh * std::exp(logDensity(value, fit.high, fit.deviation)) +
                    (1 - fit.shareOfHigh) * std::exp(logDensity(value, fit.low, fit.deviation)));
  }
  return sum;
}

/// In order, without those that hardly any other lies near to: they are no level.
std::vector<double> withoutStrays(std::span<const double> values, double near) {
  constexpr double kLeastPart = 0.01;
  std::vector<double> sorted(values.begin(), values.end());
  std::sort(sorted.begin(), sorted.end());
  const auto fewest =
      std::max<std::ptrdiff_t>(2, std::lround(kLeastPart * static_cast<double>(sorted.size())));
  std::vector<double> kept;
  std::copy_if(sorted.begin(), sorted.end(), std::back_inserter(kept), [&](double value) {
    return std::upper_bound(sorted.begin(), sorted.end(), value + near) -
               std::lower_bound(sorted.begin(), sorted.end(), value - near) >=
           fewest;
  });
  return kept;
}

}  // namespace

double TwoLevels::probabilityOfHigh(double value) const {
  const double ofHigh = std::log(shareOfHigh) + logDensity(value, high, deviation);
  const double ofLow = std::log1p(-shareOfHigh) + logDensity(value, low, deviation);
  return 1 / (1 + std::exp(ofLow - ofHigh));
}

std::optional<TwoLevels> twoLevels(std::span<const double> all, double leastStep) {
  const std::vector<double> values = withoutStrays(all, leastStep / 2);
  if (values.size() < kFewest) {
    return std::nullopt;
  }
  const auto count = static_cast<double>(values.size());
  const double middle = mean(values);
  const double deviation = deviationAround(values, middle);
  double one = 0;
  for (const double value : values) {
    one += logDensity(value, middle, deviation);
  }
  TwoLevels best{};
  double two = -std::numeric_limits<double>::infinity();
  for (const double part : {0.05, 0.2, 0.5, 0.8, 0.95}) {
    const std::size_t below = std::max<std::size_t>(1, static_cast<std::size_t>(part * count));
    const std::span<const double> sorted(values);
    const TwoLevels fit = improved(
        {mean(sorted.first(below)), mean(sorted.subspan(below)), deviation / 2, 1 - part}, values);
    if (const double likelihood = logLikelihood(fit, values); likelihood > two) {
      two = likelihood;
      best = fit;
    }
  }
  constexpr double kFurtherParameters = 2;
  const bool preferred = 2 * (two - one) > kFurtherParameters * std::log(count);
  const double step = best.high - best.low;
  return preferred && step >= leastStep && step >= kLeastStepInDeviations * best.deviation
             ? std::optional(best)
             : std::nullopt;
}

}  // namespace survey
