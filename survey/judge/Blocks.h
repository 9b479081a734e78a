/// What was measured of each cell in each block.
#pragma once

#include <cstddef>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Jackknife.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {

/// One cell in one block: a logarithm.
struct BlockValue {
  std::size_t block;
  double value;
};

/// Of each cell, in the order of the blocks.
using CellsBlocks = std::vector<std::vector<BlockValue>>;

/// Of one side by itself: logarithms.
struct BlockFit {
  CellsBlocks values;  ///< primitives per second, without what the machine did to all cells
  double level = 0;    ///< of the machine, on average over the blocks
  double slowest = 1;  ///< the machine's slowest level beside its fastest, typically: a ratio
};

struct BlockFits {
  BlockFit all;
  std::vector<BlockFit> without;  ///< one block, or group of neighbours, after the other

  /// The trimmed mean of what `valuesOf` takes from a fit, as it would be without each group.
  template <typename ValuesOf>
  Jackknife jackknife(const ValuesOf& valuesOf) const;
};

/// A visit of which some frames were undisturbed speaks through those alone.
BlockFits blockFitsOf(const SideView& side);

/// A cell's primitives per second, at the machine's level on average over the blocks. The cell must
/// have a value.
Jackknife rateOf(const BlockFits& fits, std::size_t cell);

/// A side's rate over that of the first side of its sitting: of a block the median over its pairs
/// of frames, over those alone of which neither was disturbed where there are any.
CellsBlocks blockRatiosOf(const SideView& newer);

template <typename ValuesOf>
Jackknife BlockFits::jackknife(const ValuesOf& valuesOf) const {
  const std::vector<double> values = valuesOf(all);
  const TrimmedMean whole = trimmedMean(values);
  Jackknife figure{whole.mean, values.size(), whole.kept, {}};
  for (const BlockFit& fit : without) {
    const std::vector<double> left = valuesOf(fit);
    figure.without.emplace_back();
    if (!left.empty() && left.size() < values.size()) {
      figure.without.back() = trimmedMean(left).mean;
    }
  }
  return figure;
}

}  // namespace survey
