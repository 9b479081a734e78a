/// What was measured of each cell in each block.
#pragma once

#include <cstddef>
#include <vector>

#include "survey/record/Comparison.h"

namespace survey {

/// One cell in one block.
struct BlockValue {
  std::size_t block;
  /// The logarithm of primitives per second, without what the machine did to all cells at that
  /// time.
  double corrected;
};

struct BlockValues {
  std::vector<std::vector<BlockValue>> values;  ///< of each cell, in the order of the blocks
  std::vector<double> levels;  ///< of the machine, each on average over a block: logarithms
  double slowest = 1;          ///< the machine's slowest level beside its fastest, typically
};

/// A visit of which some frames were undisturbed speaks through those alone.
BlockValues blockValuesOf(const Record& record);

/// One cell in one block: the logarithm of the new side's rate over the base side's.
struct BlockRatio {
  std::size_t block;
  double ratio;
};

/// Of sides that drew in turns, each cell's in the order of the blocks. Pairs of frames of which
/// neither was disturbed speak for a visit where there are any.
std::vector<std::vector<BlockRatio>> blockRatiosOf(const Comparison& comparison);

}  // namespace survey
