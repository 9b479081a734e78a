/// Two sides that are held against each other, as plain data.
#pragma once

#include <string>

#include "survey/record/Record.h"

namespace survey {

struct Side {
  std::string name;
  Record record;
};

struct Comparison {
  /// Whether both sides drew in turns, in one sitting: their cells and blocks are the same then,
  /// visits of the same place belong together, and so do their frames, pair by pair.
  bool inTurns = false;
  double threshold = 0;  ///< percent: a change that is not larger does not matter
  Side base;
  Side newer;
};

}  // namespace survey
