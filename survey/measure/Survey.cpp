#include "survey/measure/Survey.h"

#include <algorithm>
#include <memory>

#include "survey/figures/Figures.h"
#include "survey/measure/Machine.h"
#include "survey/measure/Station.h"
#include "survey/measure/Visits.h"

namespace survey {
namespace {

/// With fewer blocks an interval is Student's, and by chance may look precise.
constexpr std::size_t kFewestBlocks = 6;
/// A block lasts so many times as long as its first worker took to come up, at least: with few
/// cells, starting workers would otherwise take most of the time.
constexpr double kStartTimes = 10;
/// Between two looks at the figures the number of blocks grows by this part, so that looking does
/// not take over in long surveys.
constexpr std::size_t kLookPart = 8;

class Sitting {
 public:
  Sitting(const std::vector<Cell>& cells, const Settings& settings, const Launch& ofWorkers,
          const std::function<void(const Progress&)>& listener)
      : launch(ofWorkers), tell(listener), station(settings) {
    record.settings = settings;
    record.settings.environment = launch.environment;
    record.machine = thisMachine();
    record.before = machineNow();
    for (const Cell& cell : cells) {
      record.cells.push_back({cell, std::nullopt, {}});
    }
  }

  Record take() {
    try {
      for (std::size_t block = 0; goesOn(block); ++block) {
        takeBlock(block);
      }
    } catch (const Interrupted& interrupted) {
      record.ending = Ending::kInterrupted;
      record.signal = interrupted.signal;
    }
    worker.reset();
    record.elapsed = station.elapsed();
    record.after = machineNow();
    return std::move(record);
  }

 private:
  /// Whether there is a reason for another block; if not, the ending is set.
  bool goesOn(std::size_t blocks) {
    if (noWorker) {
      record.ending = Ending::kNoWorker;
      return false;
    }
    if (station.timeIsUp()) {
      record.ending = Ending::kTimeUp;
      return false;
    }
    if (blocks > 0 && std::none_of(record.cells.begin(), record.cells.end(), isWorthAnotherVisit)) {
      record.ending = Ending::kNothingLeft;
      return false;
    }
    if (blocks >= nextLook) {
      nextLook = blocks + std::max<std::size_t>(1, blocks / kLookPart);
      const Figures figures = figuresOf(record);
      if (figures.imprecise == 0 && figures.unreached == 0) {
        record.ending = Ending::kPrecise;
        return false;
      }
    }
    return true;
  }

  void takeBlock(std::size_t block) {
    worker.reset();
    station.noteSpeed(record);
    const double start = station.elapsed();
    if (!startWorker()) {
      return;
    }
    const double end = start + kStartTimes * (station.elapsed() - start);
    do {
      for (const std::size_t cell : station.turns().order(record.cells.size())) {
        if (station.timeIsUp()) {
          return;
        }
        if (isWorthAnotherVisit(record.cells[cell])) {
          if (!worker && !startWorker()) {
            return;
          }
          visit(cell, block);
        }
      }
    } while (station.elapsed() < end);
  }

  /// Whether one came up.
  bool startWorker() {
    try {
      worker = station.start(launch, record);
    } catch (const WorkerFault& fault) {
      if (station.started() == 0) {
        throw CannotSurvey(fault.what());
      }
      record.endingSentence = fault.what();
      noWorker = true;
    }
    return !noWorker;
  }

  void visit(std::size_t index, std::size_t block) {
    CellRecord& cell = record.cells[index];
    Visit visit{index, block, station.started() - 1, station.elapsed(), {}};
    try {
      const auto patience = station.patienceFor(cell.cell.detail);
      cell.answer = worker->ask<CellAnswer>(SetCell{cell.cell}, patience);
      if (cell.answer->hasFigure()) {
        visit.frames = framesOf(*worker, record.settings.frame, patience);
        record.visits.push_back(std::move(visit));
      }
    } catch (const WorkerFault& fault) {
      cell.faults.emplace_back(fault.what());
      worker.reset();
    }
    tell({std::min(1.0, station.elapsed() / record.settings.seconds),
          std::max(0.0, station.secondsLeft()), block, nameOf(cell.cell)});
  }

  Record record;
  const Launch& launch;
  const std::function<void(const Progress&)>& tell;
  Station station;
  std::unique_ptr<WorkerProcess> worker;
  std::size_t nextLook = kFewestBlocks;
  bool noWorker = false;
};

}  // namespace

Record takeSurvey(const std::vector<Cell>& cells, const Settings& settings, const Launch& launch,
                  const std::function<void(const Progress&)>& tell) {
  return Sitting(cells, settings, launch, tell).take();
}

}  // namespace survey
