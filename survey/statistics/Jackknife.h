/// How sure a figure is that is made of groups of measurements in whatever way: from what becomes
/// of it when one group after the other is left out (Quenouille, 1956; Tukey, 1958). What goes into
/// it for all groups at once, such as the fit of the machine's levels, is in the error then. For
/// groups that are independent of each other the error comes out too large rather than too small
/// (Efron and Stein, 1981); for what moves slowly, groups have to be longer than its moves (Künsch,
/// 1989).
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "survey/statistics/Estimate.h"

namespace survey {

struct Jackknife {
  double whole = 0;
  std::size_t values = 1;  ///< that it is made of
  std::size_t kept = 1;    ///< those of them that count
  /// Without each group; nothing for one that has no part in the figure, or is all of it.
  std::vector<std::optional<double>> without;
};

Estimate estimateOf(const Jackknife& figure);

/// The mean over several figures of the same groups, of which there is at least one.
Estimate meanOf(std::span<const Jackknife> figures);

}  // namespace survey
