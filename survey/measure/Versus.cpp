#include "survey/measure/Versus.h"

#include <algorithm>
#include <array>
#include <memory>

#include "survey/figures/Changes.h"
#include "survey/measure/Machine.h"
#include "survey/measure/Station.h"
#include "survey/measure/Visits.h"

namespace survey {
namespace {

/// A block lasts at least so many times as long as its workers took to come up.
constexpr double kStartTimes = 2;
/// Blocks before the first look at what is decided, and between two looks: soon and often enough
/// for cells that are not to get more of a short sitting's time.
constexpr std::size_t kFirstLook = 6;
constexpr std::size_t kBetweenLooks = 2;

class Sitting {
 public:
  Sitting(const std::vector<Cell>& cells, const Settings& settings, double threshold,
          const Contestant& base, const Contestant& newer,
          const std::function<void(const Progress&)>& listener)
      : launches{&base.launch, &newer.launch},
        tell(listener),
        station(settings),
        firstBegins(station.turns().below(2) == 0) {
    comparison = {true, threshold, {base.name, {}}, {newer.name, {}}};
    for (const std::size_t side : {0, 1}) {
      Record& record = recordOf(side);
      record.settings = settings;
      record.settings.environment = launches[side]->environment;
      record.machine = thisMachine();
      record.before = machineNow();
      for (const Cell& cell : cells) {
        record.cells.push_back({cell, std::nullopt, {}});
      }
    }
    decided.assign(cells.size(), false);
  }

  Comparison take() {
    Ending ending = Ending::kTimeUp;
    try {
      for (std::size_t block = 0; !hasEnded(block, ending); ++block) {
        takeBlock(block);
      }
    } catch (const Interrupted& interrupted) {
      ending = Ending::kInterrupted;
      recordOf(0).signal = recordOf(1).signal = interrupted.signal;
    }
    workers = {};
    for (const std::size_t side : {0, 1}) {
      Record& record = recordOf(side);
      record.ending = ending;
      record.elapsed = station.elapsed();
      record.after = machineNow();
    }
    return std::move(comparison);
  }

 private:
  Record& recordOf(std::size_t side) {
    return side == 0 ? comparison.base.record : comparison.newer.record;
  }

  bool isVisited(std::size_t cell) {
    return !decided[cell] && isWorthAnotherVisit(recordOf(0).cells[cell]) &&
           isWorthAnotherVisit(recordOf(1).cells[cell]);
  }
  bool anyIsVisited() {
    for (std::size_t cell = 0; cell < decided.size(); ++cell) {
      if (isVisited(cell)) {
        return true;
      }
    }
    return false;
  }

  bool hasEnded(std::size_t blocks, Ending& ending) {
    if (noWorker) {
      ending = Ending::kNoWorker;
    } else if (station.timeIsUp()) {
      ending = Ending::kTimeUp;
    } else {
      if (blocks >= kFirstLook && (blocks - kFirstLook) % kBetweenLooks == 0) {
        decided = decidedSoFar(comparison);
      }
      if (anyIsVisited()) {
        return false;
      }
      const bool all = std::find(decided.begin(), decided.end(), true) != decided.end();
      ending = all ? Ending::kPrecise : Ending::kNothingLeft;
    }
    return true;
  }

  void takeBlock(std::size_t block) {
    workers = {};
    station.noteSpeed(recordOf(0));
    recordOf(1).speeds = recordOf(0).speeds;
    firstBegins = !firstBegins;
    const double start = station.elapsed();
    if (!startWorkers()) {
      return;
    }
    const double end = start + kStartTimes * (station.elapsed() - start);
    do {
      for (const std::size_t cell : station.turns().order(decided.size())) {
        if (station.timeIsUp() || !startWorkers()) {
          return;
        }
        if (isVisited(cell)) {
          visit(cell, block);
        }
      }
    } while (station.elapsed() < end && anyIsVisited());
  }

  /// Those that are missing; whether both are there. Where one does not come up the other one is
  /// tried all the same: what neither side can do is not the new side's fault.
  bool startWorkers() {
    for (const std::size_t side : {firstBegins ? 0U : 1U, firstBegins ? 1U : 0U}) {
      if (workers[side]) {
        continue;
      }
      try {
        workers[side] = station.start(*launches[side], recordOf(side));
        ids[side] = station.started() - 1;
      } catch (const WorkerFault& fault) {
        if (side == 0 && recordOf(0).driver.renderer.empty()) {
          throw CannotSurvey(fault.what());
        }
        recordOf(side).endingSentence = fault.what();
        noWorker = true;
      }
    }
    return !noWorker;
  }

  /// Has that side do something with the cell; whether it did. If not, that costs its worker.
  template <typename Deed>
  bool attempt(std::size_t side, std::size_t cell, const Deed& deed) {
    try {
      deed();
      return true;
    } catch (const WorkerFault& fault) {
      recordOf(side).cells[cell].faults.emplace_back(fault.what());
      workers[side].reset();
      return false;
    }
  }

  /// Whether that side has set the cell and has a figure for it.
  bool set(std::size_t side, std::size_t cell) {
    CellRecord& own = recordOf(side).cells[cell];
    return attempt(side, cell,
                   [&] {
                     own.answer = workers[side]->ask<CellAnswer>(
                         SetCell{own.cell}, station.patienceFor(own.cell.detail));
                   }) &&
           own.answer->hasFigure();
  }

  void visit(std::size_t cell, std::size_t block) {
    // Who is set up last finds its mesh in the cache: that, too, is drawn by lot.
    const std::size_t first = station.turns().below(2);
    const std::size_t second = 1 - first;
    const double start = station.elapsed();
    const bool firstIsSet = set(first, cell);
    const bool secondIsSet = set(second, cell);
    if (firstIsSet && secondIsSet) {
      draw({first, second}, cell, {cell, block, 0, start, {}});
    } else if (firstIsSet || secondIsSet) {
      // What one side fails in, the other has to draw alone at least once, to tell whose fault it
      // is.
      drawAlone(firstIsSet ? first : second, cell);
    }
    const double left = std::max(0.0, station.secondsLeft());
    tell({1 - left / recordOf(0).settings.seconds, left, block,
          nameOf(recordOf(0).cells[cell].cell)});
  }

  void draw(const std::array<std::size_t, 2>& sides, std::size_t cell, const Visit& visit) {
    std::size_t asked = 0;  // of the two
    FramesInTurns frames;
    const auto patience = station.patienceFor(recordOf(0).cells[cell].cell.detail);
    try {
      frames = framesInTurns({workers[sides[0]].get(), workers[sides[1]].get()},
                             recordOf(0).settings.frame, patience, asked);
    } catch (const WorkerFault& fault) {
      recordOf(sides[asked]).cells[cell].faults.emplace_back(fault.what());
      workers[sides[asked]].reset();
      drawAlone(sides[1 - asked], cell);
      return;
    }
    for (const std::size_t i : {0, 1}) {
      Visit own = visit;
      own.worker = ids[sides[i]];
      own.frames = std::move(frames[i]);
      recordOf(sides[i]).visits.push_back(std::move(own));
    }
  }

  /// To see whether it can; the frames count for nothing.
  void drawAlone(std::size_t side, std::size_t cell) {
    attempt(side, cell, [&] {
      framesOf(*workers[side], recordOf(0).settings.frame,
               station.patienceFor(recordOf(0).cells[cell].cell.detail));
    });
  }

  std::array<const Launch*, 2> launches;  ///< the base side's, then the new one's, as all here
  const std::function<void(const Progress&)>& tell;
  Station station;
  bool firstBegins;  ///< whether the base side's worker comes up first
  Comparison comparison;
  std::array<std::unique_ptr<WorkerProcess>, 2> workers;
  std::array<std::size_t, 2> ids{};
  std::vector<bool> decided;
  bool noWorker = false;
};

}  // namespace

Comparison takeVersus(const std::vector<Cell>& cells, const Settings& settings, double threshold,
                      const Contestant& base, const Contestant& newer,
                      const std::function<void(const Progress&)>& tell) {
  return Sitting(cells, settings, threshold, base, newer, tell).take();
}

}  // namespace survey
