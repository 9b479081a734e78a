#include "survey/Run.h"

#include <cstdlib>

#include <fmt/format.h>

#include "platform/process/Sentences.h"
#include "survey/Output.h"
#include "survey/figures/Figures.h"
#include "survey/files/Csv.h"
#include "survey/files/ResultJson.h"
#include "survey/measure/Program.h"
#include "survey/measure/Survey.h"
#include "survey/show/Answer.h"
#include "survey/show/ProgressBar.h"
#include "survey/show/Table.h"

namespace survey {
namespace {

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
  requireReady(command);
  try {
    const Record record = taken(command, launch);
    const Figures figures = figuresOf(record);
    // First the files: who reads standard output may have left.
    bool written = wrote(command.json, [&] { return resultJson(record); });
    written = wrote(command.csv, [&] { return csvOf(record, figures); }) && written;
    written = wrote(command.markdown, [&] { return markdownOf(record, figures); }) && written;
    written = printed(fmt::format("{}\n{}\n\n{}", answerOf(record, figures), sourceOf(record),
                                  tableOf(record, figures, wantsColours()))) &&
              written;
    for (const std::string& sentence : caveatsOf(record, figures)) {
      warn(sentence);
    }
    if (record.ending == Ending::kInterrupted) {
      return statusOfSignal(record.signal);
    }
    return written ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const CannotSurvey& reason) {
    endWith(fmt::format("no survey could be taken, as no worker came up: {}.", reason.what()));
  }
}

}  // namespace survey
