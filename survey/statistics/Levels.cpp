#include "survey/statistics/Levels.h"

#include <algorithm>
#include <cmath>
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

}  // namespace

double TwoLevels::probabilityOfHigh(double value) const {
  const double ofHigh = std::log(shareOfHigh) + logDensity(value, high, deviation);
  const double ofLow = std::log1p(-shareOfHigh) + logDensity(value, low, deviation);
  return 1 / (1 + std::exp(ofLow - ofHigh));
}

std::optional<TwoLevels> twoLevels(std::span<const double> values, double leastStep) {
  if (values.size() < kFewest) {
    return std::nullopt;
  }
  const auto count = static_cast<double>(values.size());
  const double middle = mean(values);
  const double deviation = deviationAround(values, middle);
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  const TwoLevels fit = improved({*least, *most, deviation / 2, 0.5}, values);

  double one = 0;
  double two = 0;
  for (const double value : values) {
    one += logDensity(value, middle, deviation);
    two += std::log(fit.shareOfHigh * std::exp(logDensity(value, fit.high, fit.deviation)) +
                    (1 - fit.shareOfHigh) * std::exp(logDensity(value, fit.low, fit.deviation)));
  }
  constexpr double kFurtherParameters = 2;
  const bool preferred = 2 * (two - one) > kFurtherParameters * std::log(count);
  const double step = fit.high - fit.low;
  return preferred && step >= leastStep && step >= kLeastStepInDeviations * fit.deviation
             ? std::optional(fit)
             : std::nullopt;
}

}  // namespace survey
