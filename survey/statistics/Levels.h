/// Whether values lie around one level or around two.
#pragma once

#include <optional>
#include <span>

namespace survey {

/// Two normal distributions with a deviation in common.
struct TwoLevels {
  double low;
  double high;
  double deviation;
  double shareOfHigh;  ///< of the values, 0 to 1

  /// How probable it is that this value is one of the high ones.
  double probabilityOfHigh(double value) const;
};

/// None where one level says as much: two are found by expectation and maximisation (Dempster,
/// Laird and Rubin, 1977), taken where Schwarz's criterion (1978) prefers them, and worth a word
/// only where they lie `leastStep` and four deviations apart. Single values far from all others do
/// not count.
std::optional<TwoLevels> twoLevels(std::span<const double> all, double leastStep);

}  // namespace survey
