/// Estimates of the change between two sides, which drew in turns or in sittings of their own.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// A cell that both sides have blocks of.
struct ComparedCell {
  std::size_t base;    ///< index into the base side's cells
  std::size_t newer;   ///< index into the new side's
  std::size_t blocks;  ///< of the side that has fewer
};

/// Estimates are of logarithms of the ratio of the new side's rate to the base side's.
struct Evidence {
  std::vector<ComparedCell> cells;
  std::vector<Estimate> estimates;        ///< of the cells, which lend each other certainty
  std::optional<Estimate> overall;        ///< the mean over the cells; none without any
  std::vector<std::size_t> notInOverall;  ///< cells left out of it: of one block each, so that
                                          ///< nobody knows how far they scatter
  double widening = 0;                    ///< of every interval, at either end
};

Evidence evidenceOf(const SideView& base, const SideView& newer);

/// The place of that cell in the record, if it is there.
std::optional<std::size_t> indexOf(const Cell& cell, const Record& record);

}  // namespace survey
