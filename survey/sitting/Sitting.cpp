#include "survey/sitting/Sitting.h"

#include <algorithm>
#include <chrono>

#include "survey/sitting/Machine.h"
#include "survey/sitting/Rounds.h"
#include "survey/sitting/Turns.h"
#include "survey/sitting/Workers.h"

namespace survey {
namespace {

/// Blocks before the first look at what is settled: with fewer an interval may look precise by
/// chance.
constexpr std::size_t kFirstLook = 6;

class Sitting {
 public:
  Sitting(Record& planned, const std::vector<std::string>& command,
          const Interruption& interruption, const Onlookers& others)
      : record(planned),
        onlookers(others),
        turns(planned.settings.seed),
        workers(planned, command, interruption, turns),
        settled(planned.sides.size(), std::vector<bool>(planned.cells.size(), false)),
        secondsToSet(planned.cells.size(), 0.0) {
    record.machine = thisMachine();
    record.before = machineNow();
    for (Side& side : record.sides) {
      side.cells.resize(record.cells.size());
    }
    firstToStart = isAlone() ? 0 : turns.below(record.sides.size());
  }

  void take() {
    try {
      for (std::size_t block = 0; goesOn(block); ++block) {
        takeBlock(block);
      }
      if (onlookers.explain) {
        explain(onlookers.explain(record));
      }
    } catch (const Interrupted& interrupted) {
      record.ending = Ending::kInterrupted;
      record.signal = interrupted.signal;
    }
    workers.endAll();
    record.elapsed = elapsed();
    record.after = machineNow();
  }

 private:
  bool isAlone() const { return record.sides.size() == 1; }
  double elapsed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  }
  double secondsLeft() const { return secondsToMeasure() - elapsed(); }
  double secondsToMeasure() const {
    constexpr double kPart = 0.75;
    return record.settings.seconds * (onlookers.explain ? kPart : 1);
  }

  /// Whether the side still has something to find out about the cell.
  bool isOpen(std::size_t side, std::size_t cell) const {
    const CellState& state = record.sides[side].cells[cell];
    return canStart(side) && !settled[side][cell] && !state.isGivenUp() &&
           (!state.answer || state.answer->hasFigure());
  }
  bool canStart(std::size_t side) const { return record.sides[side].whyNoWorker.empty(); }

  /// The sides that draw the cell; none where that would tell nothing.
  std::vector<std::size_t> sidesFor(std::size_t cell) const {
    std::vector<std::size_t> sides;
    for (std::size_t side = 0; side < record.sides.size(); ++side) {
      if (isOpen(side, cell)) {
        sides.push_back(side);
      }
    }
    const bool tellsSomething = isAlone() || (sides.size() > 1 && sides.front() == 0);
    return tellsSomething ? sides : std::vector<std::size_t>();
  }
  /// Whether there is time to set one of those that are open.
  bool anyFits() const {
    for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
      if (!sidesFor(cell).empty() && secondsLeft() > secondsToSet[cell]) {
        return true;
      }
    }
    return false;
  }
  bool anyIsOpen() const {
    for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
      if (!sidesFor(cell).empty()) {
        return true;
      }
    }
    return false;
  }

  /// Whether there is a reason for another block; if not, the ending is set.
  bool goesOn(std::size_t blocks) {
    if (!canStart(0) ||
        (!isAlone() && std::none_of(record.sides.begin() + 1, record.sides.end(),
                                    [](const Side& side) { return side.whyNoWorker.empty(); }))) {
      record.ending = Ending::kNoWorker;
      return false;
    }
    if (secondsLeft() <= 0 || (anyIsOpen() && !anyFits())) {
      record.ending = Ending::kTimeUp;
      return false;
    }
    if (blocks >= nextLook) {
      // For many sides soon and often, so that what is open gets more of a short sitting's time;
      // for one, where all is settled at once, ever more seldom.
      constexpr std::size_t kBetweenLooks = 2;
      constexpr std::size_t kPart = 8;
      nextLook = blocks + (isAlone() ? std::max<std::size_t>(1, blocks / kPart) : kBetweenLooks);
      settled = onlookers.settled(record);
    }
    if (anyIsOpen()) {
      return true;
    }
    // What was left may have failed since the last look, and was what others waited for.
    if (blocks > 0) {
      settled = onlookers.settled(record);
    }
    if (anyIsOpen()) {
      return true;
    }
    const bool anySettled = std::any_of(settled.begin(), settled.end(), [](const auto& cells) {
      return std::find(cells.begin(), cells.end(), true) != cells.end();
    });
    record.ending = anySettled ? Ending::kPrecise : Ending::kNothingLeft;
    return false;
  }

  void takeBlock(std::size_t block) {
    workers.endAll();
    firstToStart = (firstToStart + 1) % record.sides.size();
    const double start = elapsed();
    if (!needWorkers()) {
      return;
    }
    // So many times as long as its workers took to start, at least: with few cells, starting them
    // would otherwise take most of the time.
    const double startTimes = isAlone() ? 10 : 2;
    const double end = start + startTimes * (elapsed() - start);
    do {
      for (const std::size_t cell : turns.order(record.cells.size())) {
        if (secondsLeft() <= 0) {
          return;
        }
        // A cell that takes longer to be set than is left is not begun.
        if (!sidesFor(cell).empty() && secondsLeft() > secondsToSet[cell]) {
          if (!needWorkers()) {
            return;
          }
          visit(cell, block, sidesFor(cell));
        }
      }
    } while (elapsed() < end && anyFits());
  }

  /// Starts what is missing; whether every side could. Where one cannot, the others are tried all
  /// the same: what no side can do is no side's fault.
  bool needWorkers() {
    bool all = true;
    for (std::size_t i = 0; i < record.sides.size(); ++i) {
      const std::size_t side = (firstToStart + i) % record.sides.size();
      if (!canStart(side)) {
        continue;
      }
      try {
        workers.need(side);
      } catch (const WorkerFault& fault) {
        if (side == 0 && !record.sides[0].started()) {
          throw CannotBegin(fault.what());
        }
        record.sides[side].whyNoWorker = fault.what();
        all = false;
      }
    }
    return all;
  }

  /// Whether nobody failed over it. Who does is noted and ended.
  template <typename Deed>
  bool attempt(std::size_t cell, const Deed& deed) {
    try {
      deed();
      return true;
    } catch (const WorkerFault& fault) {
      record.sides[fault.side].cells[cell].faults.emplace_back(fault.what());
      workers.end(fault.side);
      return false;
    }
  }

  void visit(std::size_t cell, std::size_t block, const std::vector<std::size_t>& sides) {
    const double start = elapsed();
    const auto patience = workers.patienceFor(record.cells[cell].detail);
    std::vector<std::size_t> ready;
    // Who is set up last finds its mesh in the cache: that, too, is drawn by lot.
    for (const std::size_t i : turns.order(sides.size())) {
      std::optional<CellAnswer>& answer = record.sides[sides[i]].cells[cell].answer;
      if (attempt(cell, [&] { answer = workers.of(sides[i]).set(record.cells[cell], patience); }) &&
          answer->hasFigure()) {
        ready.push_back(sides[i]);
      }
    }
    secondsToSet[cell] = elapsed() - start;
    if (ready.size() < sides.size() || !draw(ready, cell, block, start)) {
      tryAlone(ready, cell);
    }
    const double left = std::max(0.0, secondsLeft());
    onlookers.tell({1 - left / secondsToMeasure(), left, nameOf(record.cells[cell]), forecast()});
  }

  /// From what was visited by now, once that is as much as all cells that are open, or half of the
  /// time is over.
  double forecast() const {
    std::size_t open = 0;
    for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
      open += sidesFor(cell).empty() ? 0 : 1;
    }
    const auto visits = static_cast<double>(record.visits.size());
    return open == 0 || (record.visits.size() < open && elapsed() < secondsToMeasure() / 2)
               ? 0
               : visits / static_cast<double>(open) * secondsToMeasure() / elapsed();
  }

  std::vector<std::vector<Frame>> framesOf(const std::vector<std::size_t>& sides,
                                           std::size_t cell) {
    std::vector<Worker*> drawing;
    drawing.reserve(sides.size());
    for (const std::size_t side : sides) {
      drawing.push_back(&workers.of(side));
    }
    return framesInTurns(drawing, record.settings.frame,
                         workers.patienceFor(record.cells[cell].detail), deadline());
  }
  std::chrono::steady_clock::time_point deadline() const {
    return began + std::chrono::ceil<std::chrono::steady_clock::duration>(
                       std::chrono::duration<double>(secondsToMeasure()));
  }

  /// Whether nobody failed over it; if so, the visit is kept, unless there was no time for frames.
  bool draw(const std::vector<std::size_t>& sides, std::size_t cell, std::size_t block,
            double start) {
    return attempt(cell, [&] {
      const std::optional<double> before = workers.yardstick();
      auto frames = framesOf(sides, cell);
      const std::optional<double> after = workers.yardstick();
      if (frames.front().empty()) {
        return;
      }
      Visit visit{cell, block, start, {}, {}, {}};
      if (before && after) {
        visit.yardstick = {*before, *after};
      }
      visit.frames.resize(record.sides.size());
      for (std::size_t side = 0; side < record.sides.size(); ++side) {
        visit.workers.push_back(workers.numberOf(side));
      }
      for (std::size_t i = 0; i < sides.size(); ++i) {
        visit.frames[sides[i]] = std::move(frames[i]);
      }
      record.visits.push_back(std::move(visit));
    });
  }

  /// Blocks of their own with fresh workers, as frames in which samples are taken are slower.
  void explain(const std::vector<std::size_t>& cells) {
    constexpr std::size_t kMostBlocks = 20;
    const double end = std::min(record.settings.seconds, elapsed() + record.settings.seconds / 4);
    for (std::size_t block = 0; block < kMostBlocks && !cells.empty() && elapsed() < end; ++block) {
      workers.endAll();
      for (const std::size_t i : turns.order(cells.size())) {
        try {
          profile(cells[i], block);
        } catch (const WorkerFault& fault) {
          workers.end(fault.side);  // no figure depends on it
        }
        if (elapsed() >= end) {
          return;
        }
      }
    }
  }

  void profile(std::size_t cell, std::size_t block) {
    constexpr int kFrames = 8;
    constexpr double kMicrosecondsPerMillisecond = 1e3;
    const auto patience = workers.patienceFor(record.cells[cell].detail);
    const auto leastTime = std::chrono::microseconds(
        static_cast<std::int64_t>(record.settings.frame * kMicrosecondsPerMillisecond));
    ProfiledVisit visit{cell, block, std::vector<Profile>(record.sides.size())};
    for (const std::size_t side : turns.order(record.sides.size())) {
      workers.need(side);
      workers.of(side).set(record.cells[cell], patience);
      for (int frame = 0; frame < kFrames / 4; ++frame) {  // to warm up
        workers.of(side).draw(leastTime, patience);
      }
      visit.sides[side] = workers.of(side).profile(leastTime, kFrames, patience);
    }
    record.profiles.push_back(std::move(visit));
  }

  /// What one side fails in, the others have to draw alone at least once, to tell whose fault it
  /// is; the frames count for nothing.
  void tryAlone(const std::vector<std::size_t>& sides, std::size_t cell) {
    for (const std::size_t side : sides) {
      if (workers.has(side)) {
        attempt(cell, [&] { framesOf({side}, cell); });
      }
    }
  }

  Record& record;
  const Onlookers& onlookers;
  Turns turns;
  Workers workers;
  Settled settled;
  std::vector<double> secondsToSet;  ///< by cell, for all sides together; 0: not known
  std::size_t firstToStart;          ///< changes with every block
  std::size_t nextLook = kFirstLook;
  std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
};

}  // namespace

void takeSitting(Record& record, const std::vector<std::string>& command,
                 const Interruption& interruption, const Onlookers& onlookers) {
  Sitting(record, command, interruption, onlookers).take();
}

}  // namespace survey
