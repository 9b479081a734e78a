/// How the sides changed against the first one: ratios, how sure each is, and verdicts.
///
/// A verdict of a change says that it is real and larger than the threshold (the minimum-effect
/// test of McCarthy and Smyth, 2009). The chance of even one false one in a whole comparison, of
/// however many sides, is held at 5 %: half of that goes to the sides' overall means, where a
/// change of every cell shows first, and half to the cells of all sides, either by Holm's step-down
/// (1979); where all overall means have changed, their half goes to the cells as well.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

enum class Verdict {
  kSame,  ///< the interval lies within the threshold
  kSlower,
  kFaster,
  kUndecided,
};

struct Change {
  /// New to base, with 95 %: of all primitives over all time. Anything, where nothing is known.
  Interval ratio{0, 1, std::numeric_limits<double>::infinity()};
  std::size_t units = 0;  ///< blocks, or sittings, of the side that has fewer
  Verdict verdict = Verdict::kUndecided;
  /// Undecided between the same and slower, or worse.
  bool mayBeSlower = true;
};

struct CellChange {
  std::size_t base;   ///< index into the base side's cells
  std::size_t newer;  ///< index into the new side's
  Change change;
  /// Of the typical pair of frames, where that differs by more than both are unsure.
  std::optional<Interval> typical;
};

/// Of one side, the new one, against the first, the base side.
struct Changes {
  SideView base;                       ///< in its first sitting
  SideView newer;                      ///< likewise
  std::size_t sittings = 1;            ///< of the side that has fewer
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
  std::vector<std::size_t> notInOverall;    ///< the base side's cells that it leaves out, as they
                                            ///< were not measured often enough
  /// No cell has, or could get, a ratio, and that is not the new side's fault.
  bool hopeless = false;
  double visible = 100;  ///< percent: a slowdown of one cell that would most probably be found
  double visibleOverall = 100;  ///< percent: one of all cells
  /// Percent by which the intervals are wider at either end, as nobody knows how far sittings
  /// scatter; no change is called real then.
  double allowance = 0;
  bool inUnlikeStates = false;  ///< no state of the core is there that both sides were measured in

  bool isInTurns() const { return base.record == newer.record; }
  /// Whether workers of the new side started at first, and then no more.
  bool newStopped() const { return newer.side().started() && !newer.side().whyNoWorker.empty(); }
};

/// Of all sides but the first, in order; views of one name are one side, in several sittings.
/// `threshold` in percent.
std::vector<Changes> changesOf(const std::vector<SideView>& views, double threshold);

/// The base side's cells that changed most on any side, at most so many; where a side is slower
/// overall, all of its cells count as changed.
std::vector<std::size_t> changedMost(const std::vector<Changes>& changes, std::size_t most);

/// A moment during a sitting of several sides: by side and cell whether it is surer than it needs
/// to be in the end, so that looking early does not add false alarms (the rule of Haybittle and
/// Peto). Nothing of the first side ever is.
std::vector<std::vector<bool>> decidedSoFar(const Record& record, double threshold);

/// Exit statuses for a bisection.
enum BisectionStatus : int {
  kNothingSlower = 0,
  kSomethingSlower = 1,  ///< or fails on the new side alone
  kUndecidedStatus = 125,
  kUnusable = 255,  ///< more blocks would not help: the base side has no figure to compare with
};
BisectionStatus bisectionStatusOf(const Changes& changes);
/// Of several sides the worst: slower before unusable, undecided and nothing.
BisectionStatus bisectionStatusOf(const std::vector<Changes>& changes);

}  // namespace survey
