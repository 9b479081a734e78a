/// A survey from its settings to its files.
#pragma once

#include "survey/CommandLine.h"
#include "survey/measure/WorkerProcess.h"

namespace survey {

/// Takes it, prints the answer and the table on standard output and what has to be known beside
/// them on standard error, and writes the files. The exit status.
int run(const RunCommand& command, const Launch& launch);

}  // namespace survey
