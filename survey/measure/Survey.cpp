#include "survey/measure/Survey.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>

#include <fmt/format.h>
#include <sched.h>

#include "survey/figures/Figures.h"
#include "survey/measure/Interruption.h"
#include "survey/measure/Machine.h"
#include "survey/measure/Visits.h"
#include "survey/plan/Turns.h"

namespace survey {
namespace {

using std::chrono::steady_clock;

/// With fewer blocks an interval is Student's, and by chance may look precise.
constexpr std::size_t kFewestBlocks = 6;
/// A block lasts so many times as long as its first worker took to come up, at least: with few
/// cells, starting workers would otherwise take most of the time.
constexpr double kStartTimes = 10;
/// Between two looks at the figures the number of blocks grows by this part, so that looking does
/// not take over in long surveys.
constexpr std::size_t kLookPart = 8;
constexpr std::size_t kMostFaults = 2;
/// So many workers in a row that do not come up end the survey.
constexpr int kMostFailedStarts = 3;
/// Environments of different lengths put the stack elsewhere: not always at the same lucky place.
constexpr std::uint64_t kMostPadding = 4096;

/// The last processor this process may use: the first ones often serve interrupts.
std::optional<unsigned int> lastCore() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) {
    return std::nullopt;
  }
  for (unsigned int core = CPU_SETSIZE; core-- > 0;) {
    if (CPU_ISSET(core, &allowed)) {
      return core;
    }
  }
  return std::nullopt;
}

class Sitting {
 public:
  Sitting(const std::vector<Cell>& cells, const Settings& settings, const Launch& ofWorkers,
          const std::function<void(const Progress&)>& listener)
      : launch(ofWorkers), tell(listener), turns(settings.seed) {
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
    record.elapsed = elapsed();
    record.after = machineNow();
    return std::move(record);
  }

 private:
  double elapsed() const {
    return std::chrono::duration<double>(steady_clock::now() - began).count();
  }
  bool timeIsUp() const { return elapsed() >= record.settings.seconds; }

  /// Whether there is a reason for another block; if not, the ending is set.
  bool goesOn(std::size_t blocks) {
    if (noWorker) {
      record.ending = Ending::kNoWorker;
      return false;
    }
    if (timeIsUp()) {
      record.ending = Ending::kTimeUp;
      return false;
    }
    if (blocks > 0 && std::none_of(record.cells.begin(), record.cells.end(),
                                   [&](const CellRecord& cell) { return isVisited(cell); })) {
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

  static bool isVisited(const CellRecord& cell) {
    return cell.faults.size() < kMostFaults && (!cell.answer || cell.answer->hasFigure());
  }

  void takeBlock(std::size_t block) {
    worker.reset();
    const double start = elapsed();
    if (!startWorker()) {
      return;
    }
    const double end = start + kStartTimes * (elapsed() - start);
    do {
      for (const std::size_t cell : turns.order(record.cells.size())) {
        if (timeIsUp()) {
          return;
        }
        if (isVisited(record.cells[cell])) {
          if (!worker && !startWorker()) {
            return;
          }
          visit(cell, block);
        }
      }
    } while (elapsed() < end);
  }

  /// Whether one came up.
  bool startWorker() {
    std::string reason;
    for (int attempt = 0; attempt < kMostFailedStarts; ++attempt) {
      try {
        Launch padded = launch;
        padded.environment.push_back("SORVANTA_SURVEY_PADDING=" +
                                     std::string(turns.below(kMostPadding), 'x'));
        worker = std::make_unique<WorkerProcess>(padded, interruption);
        // The first worker tries the devices; the others take the one that it found.
        const Begin begin{
            workers == 0 ? record.settings.device : std::to_string(record.driver.number),
            record.settings.onScreen, lastCore(), turns.below(std::uint64_t{1} << 32)};
        record.driver = worker->ask<Driver>(begin, patienceFor(0));
        ++workers;
        return true;
      } catch (const WorkerFault& fault) {
        worker.reset();
        reason = fault.what();
      }
    }
    if (workers == 0) {
      throw CannotSurvey(reason);
    }
    record.endingSentence = reason;
    noWorker = true;
    return false;
  }

  void visit(std::size_t index, std::size_t block) {
    CellRecord& cell = record.cells[index];
    Visit visit{index, block, workers - 1, elapsed(), {}};
    try {
      const auto patience = patienceFor(cell.cell.detail);
      cell.answer = worker->ask<CellAnswer>(SetCell{cell.cell}, patience);
      if (cell.answer->hasFigure()) {
        visit.frames = framesOf(*worker, record.settings.frame, patience);
        record.visits.push_back(std::move(visit));
      }
    } catch (const WorkerFault& fault) {
      cell.faults.emplace_back(fault.what());
      worker.reset();
    }
    const double seconds = record.settings.seconds;
    tell({std::min(1.0, elapsed() / seconds), std::max(0.0, seconds - elapsed()), block,
          nameOf(cell.cell)});
  }

  /// Larger models take longer to build and to draw.
  std::chrono::milliseconds patienceFor(unsigned int detail) const {
    constexpr double kUsualDetail = 512;
    const double scale = std::max(1.0, std::pow(detail / kUsualDetail, 2));
    return std::chrono::ceil<std::chrono::milliseconds>(
        std::chrono::duration<double>(scale * record.settings.patience));
  }

  Record record;
  const Launch& launch;
  const std::function<void(const Progress&)>& tell;
  Turns turns;
  Interruption interruption;
  steady_clock::time_point began = steady_clock::now();
  std::unique_ptr<WorkerProcess> worker;
  std::size_t workers = 0;  ///< that came up
  std::size_t nextLook = kFewestBlocks;
  bool noWorker = false;
};

}  // namespace

Record takeSurvey(const std::vector<Cell>& cells, const Settings& settings, const Launch& launch,
                  const std::function<void(const Progress&)>& tell) {
  return Sitting(cells, settings, launch, tell).take();
}

}  // namespace survey
