/// What two sides' records say of the change between them: ratios, how sure each is, and verdicts.
///
/// A ratio is the trimmed mean over the blocks of its logarithm; cells lend each other certainty
/// about how far blocks scatter. A verdict of a change says that it is real and larger than the
/// threshold. The chance of even one false one in a whole comparison is held at 5 %: half of that
/// goes to the overall mean, where a change of every cell shows first, and half to the cells, by
/// Holm's step-down (1979); where the overall mean has changed, its half goes to the cells as well.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "survey/record/Comparison.h"
#include "survey/statistics/Estimate.h"

namespace survey {

enum class Verdict {
  kSame,  ///< the interval lies within the threshold
  kSlower,
  kFaster,
  kUndecided,
};

struct Change {
  Interval ratio{1, 1, 1};  ///< new to base, with 95 %
  std::size_t blocks = 0;   ///< of the side that has fewer
  Verdict verdict = Verdict::kUndecided;
  /// Undecided between the same and slower, or worse.
  bool mayBeSlower = true;
};

struct CellChange {
  std::size_t base;   ///< index into the base side's cells
  std::size_t newer;  ///< index into the new side's
  Change change;
};

struct Changes {
  std::vector<CellChange> cells;       ///< in the order of the base side's
  std::vector<std::size_t> onlyBase;   ///< its cells that the new side was not asked for
  std::vector<std::size_t> onlyNew;    ///< the other way round
  std::vector<std::size_t> newFails;   ///< the new side's that have a figure on the base side alone
  std::vector<std::size_t> baseFails;  ///< the base side's that have a figure on the new one alone
  /// The new side's that it gave up, and the base side did not, after it had drawn them: that may
  /// be chance.
  std::vector<std::size_t> newDies;
  std::vector<std::size_t> withoutFigures;  ///< the base side's that have none on either
  Change overall;                           ///< the geometric mean over the cells
  std::vector<std::size_t>
      notInOverall;  ///< cells that it leaves out, too few blocks tell their scatter
  bool hopeless =
      false;           ///< no cell has, or could get, a ratio, and that is not the new side's fault
  double visible = 0;  ///< percent: a slowdown of one cell that would most probably be found
  double visibleOverall = 0;  ///< percent: one of all cells
  /// Percent that the machine's own speed moved by between two sittings, where that is known; the
  /// intervals of sides that did not draw in turns are wider by so much at either end.
  double moved = 0;
};

Changes changesOf(const Comparison& comparison);

/// A moment during a comparison: the cells of which it is surer than it needs to be in the end, so
/// that looking early does not add false alarms (the rule of Haybittle and Peto).
std::vector<bool> decidedSoFar(const Comparison& comparison);

/// Exit statuses for a bisection.
enum BisectionStatus : int {
  kNothingSlower = 0,
  kSomethingSlower = 1,  ///< or fails on the new side alone
  kUndecidedStatus = 125,
  kUnusable = 255,  ///< more blocks would not help: the base side has no figure to compare with
};
BisectionStatus bisectionStatusOf(const Changes& changes);

}  // namespace survey
