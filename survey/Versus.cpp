#include "survey/Versus.h"

#include <fmt/format.h>

#include "platform/process/Sentences.h"
#include "survey/Inputs.h"
#include "survey/Output.h"
#include "survey/files/ResultJson.h"
#include "survey/measure/Program.h"
#include "survey/measure/Versus.h"
#include "survey/show/ProgressBar.h"
#include "survey/show/Sides.h"
#include "survey/show/Verdict.h"
#include "survey/show/VerdictTable.h"

namespace survey {
namespace {

Comparison taken(const VersusCommand& command, const Launch& launch) {
  const auto contestant = [&](const std::string& name, const std::vector<std::string>& variables) {
    return Contestant{name, {launch.command, variables}};
  };
  ProgressBar bar(!command.quiet);
  Comparison comparison =
      takeVersus(command.cells, command.settings, command.threshold,
                 contestant(command.baseName, command.base),
                 contestant(command.newName, command.newer), [&](const Progress& progress) {
                   bar.show(progress.part, progress.secondsLeft, progress.cell);
                 });
  comparison.base.record.program = comparison.newer.record.program = thisProgram();
  return comparison;
}

/// Prints and writes it. A result that nobody can read counts as none.
int tell(const Comparison& comparison, const std::string& json, const std::string& markdown) {
  const Changes changes = changesOf(comparison);
  bool written = wrote(json, [&] { return resultJson(comparison); });
  written = wrote(markdown, [&] { return markdownOf(comparison, changes); }) && written;
  std::string text = verdictOf(comparison, changes) + '\n';
  for (const std::string& sentence : sidesOf(comparison)) {
    text += sentence + '\n';
  }
  written = printed(text + '\n' + tableOf(comparison, changes, wantsColours())) && written;
  for (const std::string& sentence : caveatsOf(comparison, changes)) {
    warn(sentence);
  }
  return written ? bisectionStatusOf(changes) : kUnusable;
}

/// Throws Unusable.
Record recordIn(const std::string& path) {
  Result result = resultIn(path);
  if (auto* const comparison = std::get_if<Comparison>(&result)) {
    return std::move(comparison->newer.record);
  }
  return std::move(std::get<Record>(result));
}

}  // namespace

int versus(const VersusCommand& command, const Launch& launch) {
  requireReady(command);
  try {
    const Comparison comparison = taken(command, launch);
    const int status = tell(comparison, command.json, command.markdown);
    const Record& base = comparison.base.record;
    if (base.ending == Ending::kInterrupted) {
      return statusOfSignal(base.signal);
    }
    return base.ending == Ending::kNoWorker && !base.endingSentence.empty() ? kUnusable : status;
  } catch (const CannotSurvey& reason) {
    warn(fmt::format("the base side cannot be used, as no worker of it came up: {}.",
                     reason.what()));
    return kUnusable;
  }
}

int compare(const CompareCommand& command) {
  Comparison comparison;
  comparison.threshold = command.threshold;
  comparison.base = {"old", recordIn(command.base)};
  comparison.newer = {"new", recordIn(command.newer)};
  return tell(comparison, command.json, command.markdown);
}

}  // namespace survey
