/// What was measured of each cell in each block: logarithms.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

/// One cell in one block.
struct BlockValue {
  std::size_t block;
  double value;
};

/// Of each cell, in the order of the blocks.
using CellsBlocks = std::vector<std::vector<BlockValue>>;

struct BlockRates {
  CellsBlocks all;      ///< all primitives over all time
  CellsBlocks typical;  ///< the median over the frames, or over the pairs of them
};

/// Primitives per second, of the visits that count. A visit of which some rounds were undisturbed
/// speaks through those alone.
BlockRates blockRatesOf(const SideView& side, const std::vector<bool>& counts);

/// A side's rate over that of the first side of its sitting, likewise.
BlockRates blockRatiosOf(const SideView& newer, const std::vector<bool>& counts);

std::vector<double> valuesOf(const std::vector<BlockValue>& blocks);

/// Undisturbed frames that take longer than is typical of their cell in that state of the core, by
/// far.
struct Stalls {
  double part;    ///< of the frames, 0 to 1
  double longer;  ///< nanoseconds, on average
};
std::optional<Stalls> stallsOf(const SideView& side, std::size_t cell);

}  // namespace survey
