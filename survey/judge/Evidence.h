/// Estimates of the change between two sides, which drew in turns or in sittings of their own.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// A side as it was seen in one sitting or in several, in the order of time.
using Measured = std::vector<SideView>;

/// A cell that both sides have values of.
struct ComparedCell {
  std::size_t base;   ///< index into the cells of the base side's first sitting
  std::size_t newer;  ///< index into those of the new side's first
  std::size_t units;  ///< of replication, of the side that has fewer: blocks, or sittings
};

/// Estimates are of logarithms of the ratio of the new side's rate to the base side's.
struct Evidence {
  std::vector<ComparedCell> cells;
  std::vector<Estimate> estimates;  ///< of the cells
  std::vector<Estimate> typical;    ///< likewise of pairs of frames; empty between sittings
  std::optional<Estimate> overall;  ///< the mean over the cells; none without any
  std::vector<std::size_t>
      notInOverall;  ///< cells left out of it: some of their units are missing,
                     ///< or one block does not tell how far they scatter
  /// Of every interval, at either end; with one, no change is ever real.
  double allowance = 0;
  /// Whether no state of the core is there that sittings of both sides were in: or one driver is
  /// slower at the yardstick itself, which cannot be told from that.
  bool inUnlikeStates = false;
};

/// In turns the block is the unit of replication, and cells lend each other certainty about how far
/// blocks scatter. Between sittings it is the sitting, as the level that varies most (Kalibera and
/// Jones, 2013), and a pair of them where the two sides took turns; where a side has one sitting
/// alone, nobody knows how far sittings scatter, and the allowance stands for it.
Evidence evidenceOf(const Measured& base, const Measured& newer);

/// When a sitting began, in seconds since 1970; 0 where its record does not tell.
double beginOf(const SideView& sitting);

/// The place of that cell in the record, if it is there.
std::optional<std::size_t> indexOf(const Cell& cell, const Record& record);

}  // namespace survey
