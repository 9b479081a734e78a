/// What state the processor was in: a core is slower while its other half works, too.
#pragma once

#include <optional>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

enum class CoreState {
  kFast,  ///< also where there is only one
  kSlow,
};

struct States {
  std::vector<std::optional<CoreState>> ofVisits;  ///< none where it changed meanwhile
  bool areTwo = false;
  double fastShare = 1;  ///< of the visits of one state
  /// What the sitting's figures are of: the slow one where the fast one was hardly seen.
  CoreState shown = CoreState::kFast;

  /// By visit, whether it was in that state.
  std::vector<bool> visitsIn(CoreState state) const;
};

/// From the yardstick: a visit counts as fast or slow where both of its readings do. Where that can
/// be said of fewer than half of the visits, as states do not last, there is one state.
States statesOf(const Record& record);

/// The same of several sittings of one driver on one machine, whose readings tell the states
/// together: one of them may have been in a single state.
std::vector<States> statesOf(const std::vector<const Record*>& sittings);

}  // namespace survey
