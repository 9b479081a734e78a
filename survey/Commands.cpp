#include "survey/Commands.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "platform/process/Sentences.h"
#include "survey/InputOutput.h"
#include "survey/Program.h"
#include "survey/data/Words.h"
#include "survey/sitting/Sitting.h"
#include "survey/tell/Files.h"
#include "survey/tell/Page.h"
#include "survey/tell/ProgressBar.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"

namespace survey {
namespace {

bool isMeasured(const Result& result) {
  return std::any_of(result.sittings.begin(), result.sittings.end(),
                     [](const Record& record) { return !record.visits.empty(); });
}

/// What is made of a result, where it is asked for.
struct Texts {
  std::function<std::string()> junit{};
  std::function<std::string()> csv{};
  std::function<std::string()> line{};  ///< in place of the answer and the table
};

/// Writes the files and prints; whether all of that could be done.
bool tell(const Result& result, const Summary& summary, const Outputs& outputs,
          const Texts& texts) {
  // First the files: who reads standard output may have left.
  bool written = true;
  const auto write = [&](const std::string& path, const std::function<std::string()>& content) {
    written = (isMeasured(result) ? wrote(path, content) : keptOrWrote(path, content)) && written;
  };
  write(outputs.json, [&] { return resultJson(result); });
  write(outputs.markdown, [&] { return asMarkdown(summary); });
  write(outputs.csv, texts.csv);
  write(outputs.junit, texts.junit);
  written = printed(outputs.line ? texts.line() : asText(summary, wantsColours()),
                    outputs.takeStandardOutput()) &&
            written;
  for (const std::string& sentence : summary.caveats) {
    warn(sentence);
  }
  return written;
}

/// Of one side. One without a single figure is none.
int tellSurvey(const Result& result, const SittingCommand& command) {
  const SideView side = sidesOf(result).front();
  const Figures figures = figuresOf(side);
  const Summary summary =
      result.question ? summaryOf(*result.question, side, figures) : summaryOf(side, figures);
  const bool written = tell(result, summary, command.outputs,
                            {.junit = [&] { return junitOf(side, figures); },
                             .csv = [&] { return csvOf(side, figures); }});
  return written && isMeasured(result) ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Of several. A result that nobody can read counts as none.
int tellComparison(const Result& result, const Outputs& outputs) {
  const std::vector<SideView> sides = sidesOf(result);
  const std::vector<Changes> changes = changesOf(sides, result.threshold);
  return tell(result, summaryOf(sides, changes, result.threshold), outputs,
              {.junit = [&] { return junitOf(changes); }, .line = [&] { return linesOf(changes); }})
             ? bisectionStatusOf(changes)
             : kUnusable;
}

/// Everything of a single side is settled at once, when all of it is precise.
Settled settledSoFar(const Record& record, double threshold) {
  if (record.sides.size() > 1) {
    return decidedSoFar(record, threshold);
  }
  const SideView side = sidesOf(record).front();
  const Figures figures = figuresOf(side);
  if (figures.imprecise == 0 && figures.unreached == 0) {
    return {std::vector<bool>(record.cells.size(), true)};
  }
  return {cellsAhead(side, figures)};
}

/// Those that were named, or three that changed most.
std::vector<std::size_t> cellsToExplain(const Record& record, const SittingCommand& command) {
  constexpr std::size_t kMost = 3;
  std::vector<std::size_t> cells;
  for (const std::string& name : *command.explain) {
    for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
      if (nameOf(record.cells[cell]) == name) {
        cells.push_back(cell);
      }
    }
  }
  if (!cells.empty()) {
    return cells;
  }
  return changedMost(changesOf(sidesOf(record), command.threshold), kMost);
}

/// Before it is spent: with fewer visits nobody knows how far they scatter.
void warnOfShortTime(double seconds, double visits) {
  constexpr double kEnough = 6;
  if (visits < kEnough) {
    warn(fmt::format(
        "in {:g} s each cell can be drawn some {:.1f} times, which is too few to be sure of "
        "anything: give it {:.0f} s with --seconds, or fewer cells.",
        seconds, visits, std::ceil(seconds * kEnough / visits)));
  }
}

/// What has no verdict of its own in a sitting of several sides.
int statusOf(const Record& record, int status) {
  constexpr int kSignalled = 128;  // as shells have it
  if (record.ending == Ending::kInterrupted) {
    return kSignalled + record.signal;
  }
  const bool baseIsGone = record.sides.size() > 1 && !record.sides.front().whyNoWorker.empty();
  return baseIsGone ? kUnusable : status;
}

/// The side of a file that is compared, as the only one of its sitting.
Record sideIn(const std::string& path, const std::string& name) {
  Result result = resultIn(path);
  Record record = std::move(result.sittings.back());
  record.sides = {std::move(record.sides.back())};
  record.sides.front().name = name;
  for (Visit& visit : record.visits) {
    visit.frames = {std::move(visit.frames.back())};
    visit.workers = {visit.workers.back()};
  }
  return record;
}

/// The same for no two sittings.
std::string identityOf(const Record& record) {
  return fmt::format("{} {} {}", record.machine.host, record.before.when, record.settings.seed);
}

}  // namespace

int takeSitting(const SittingCommand& command, const std::vector<std::string>& worker) {
  requireReady(command);
  const Interruption interruption;
  Result result{{command.plan}, command.threshold, command.question};
  Record& record = result.sittings.front();
  record.program = thisProgram();
  bool forecast = false;
  try {
    ProgressBar bar(!command.quiet);
    takeSitting(record, worker, interruption,
                {[&](const Record& seen) { return settledSoFar(seen, command.threshold); },
                 [&](const Progress& progress) {
                   bar.show(progress.part, progress.secondsLeft, progress.cell);
                   if (!forecast && progress.visits > 0) {
                     forecast = true;
                     warnOfShortTime(record.settings.seconds, progress.visits);
                   }
                 },
                 command.explain ? std::function([&](const Record& seen) {
                   return cellsToExplain(seen, command);
                 })
                                 : nullptr});
  } catch (const CannotBegin& reason) {
    if (!result.isComparison()) {
      endWith(fmt::format("no survey could be taken, as no worker could be started: {}.",
                          reason.what()));
    }
    warn(fmt::format("the base side cannot be used, as no worker of it could be started: {}.",
                     reason.what()));
    return kUnusable;
  }
  if (record.ending == Ending::kInterrupted) {
    warn("what is known by now is being written; a further signal waits for that.");
  }
  return statusOf(record, result.isComparison() ? tellComparison(result, command.outputs)
                                                : tellSurvey(result, command));
}

int compare(const CompareCommand& command) {
  std::vector<std::string> inputs = command.base;
  inputs.insert(inputs.end(), command.newer.begin(), command.newer.end());
  requirePlacesFor(command.outputs, inputs);
  Result result{{}, command.threshold};
  for (const auto& [paths, name] :
       {std::pair(&command.base, "old"), std::pair(&command.newer, "new")}) {
    std::set<std::string> sittings;
    for (const std::string& path : *paths) {
      const Record& record = result.sittings.emplace_back(sideIn(path, name));
      if (!sittings.insert(identityOf(record)).second) {
        throw Unusable(
            fmt::format("{} is a sitting that was named before, and would count twice", path));
      }
    }
  }
  return tellComparison(result, command.outputs);
}

int report(const ReportCommand& command) {
  requirePlacesFor({.html = command.html}, command.files);
  std::vector<NamedResult> results;
  for (const std::string& path : command.files) {
    results.push_back({std::filesystem::path(path).stem().string(), resultIn(path)});
  }
  return wrote(command.html, [&] { return pageOf(results); }) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace survey
