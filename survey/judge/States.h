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

/// From the yardstick: a visit counts as fast or slow where both of its readings do.
States statesOf(const Record& record);

}  // namespace survey
