/// Who leads among things that were measured in the same blocks.
#pragma once

#include <cstddef>
#include <vector>

#include "survey/judge/Blocks.h"
#include "survey/statistics/Estimate.h"

namespace survey {

struct Ranked {
  std::size_t member;  ///< index into the group
  Interval ratio;      ///< to the best
  bool leads;          ///< the best, or one that may well be it
};

/// Of each group its members by ratio, the best first; each member is its blocks' values,
/// logarithms of what is better if it is more, of which there is at least one. Ratios lend each
/// other certainty about how far they scatter; none is taken for surer than it looks by itself.
/// Leaders are Gupta's subset (1965), which holds the truly best of a group with 95 %; its constant
/// is Bonferroni's, which needs no like scatter and no independence.
std::vector<std::vector<Ranked>> rankingsOf(const std::vector<CellsBlocks>& groups);

/// The ratio of one to another, a logarithm: block by block, where at least half of the blocks of
/// one of them, and two, have both.
Estimate ratioOf(const std::vector<BlockValue>& blocks, const std::vector<BlockValue>& others);

}  // namespace survey
