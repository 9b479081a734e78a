/// How sure a figure is that is made of groups of measurements in whatever way: from what becomes
/// of it when one group after the other is left out (Quenouille, 1956; Tukey, 1958). What goes into
/// it for all groups at once, such as the fit of the machine's levels, is in the error then, which
/// comes out too large rather than too small (Efron and Stein, 1981).
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "survey/statistics/Estimate.h"

namespace survey {

struct Jackknife {
  double whole = 0;
  /// Without each group; nothing for one that has no part in the figure, or is all of it.
  std::vector<std::optional<double>> without;
};

Estimate estimateOf(const Jackknife& figure);

/// The mean over several figures of the same groups, of which there is at least one, no surer than
/// the one that fewest groups have a part in.
Estimate meanOf(std::span<const Jackknife> figures);

}  // namespace survey
