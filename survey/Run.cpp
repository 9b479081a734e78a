#include "survey/Run.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/process/Sentences.h"
#include "survey/figures/Figures.h"
#include "survey/files/Csv.h"
#include "survey/files/ResultJson.h"
#include "survey/files/WholeFile.h"
#include "survey/measure/Program.h"
#include "survey/measure/Survey.h"
#include "survey/show/Answer.h"
#include "survey/show/ProgressBar.h"
#include "survey/show/Table.h"

namespace survey {
namespace {

constexpr int kSignalled = 128;  // plus the signal's number, as shells count

bool wantsColours() {
  const char* const noColour = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0');
}

/// Whether it could be written, or need not be.
bool wrote(const std::string& path, const std::function<std::string()>& content) {
  if (path.empty()) {
    return true;
  }
  try {
    writeWhole(path, content());
    return true;
  } catch (const std::system_error& error) {
    warn(fmt::format("{} cannot be written: {}.", path, error.code().message()));
    return false;
  }
}

Record taken(const RunCommand& command, const Launch& launch) {
  ProgressBar bar(!command.quiet);
  Record record =
      takeSurvey(command.cells, command.settings, launch, [&](const Progress& progress) {
        bar.show(progress.part, progress.secondsLeft, progress.cell);
      });
  record.program = thisProgram();
  return record;
}

}  // namespace

int run(const RunCommand& command, const Launch& launch) {
  if (!thisProgram().optimised && !command.unoptimised) {
    endWith(
        "this build is without optimisation, so its figures would be those of a slow program; "
        "build with CMAKE_BUILD_TYPE=Release, or insist with --unoptimised.");
  }
  try {
    const Record record = taken(command, launch);
    const Figures figures = figuresOf(record);
    // First the files: who reads standard output may have left.
    bool written = wrote(command.json, [&] { return resultJson(record); });
    written = wrote(command.csv, [&] { return csvOf(record, figures); }) && written;
    written = wrote(command.markdown, [&] { return markdownOf(record, figures); }) && written;
    fmt::print("{}\n{}\n\n{}", answerOf(record, figures), sourceOf(record),
               tableOf(record, figures, wantsColours()));
    if (std::fflush(stdout) != 0) {
      warn("standard output cannot be written to.");
      written = false;
    }
    for (const std::string& sentence : caveatsOf(record, figures)) {
      warn(sentence);
    }
    if (record.ending == Ending::kInterrupted) {
      return kSignalled + record.signal;
    }
    return written ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const CannotSurvey& reason) {
    endWith(fmt::format("no survey could be taken, as no worker came up: {}.", reason.what()));
  }
}

}  // namespace survey
