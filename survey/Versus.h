/// Comparisons from their settings to their files. All exit statuses are made for a bisection: 0
/// nothing is slower, 1 something is or fails on the new side alone, 125 undecided, 255 the command
/// line or the base side cannot be used.
#pragma once

#include "survey/CommandLine.h"
#include "survey/figures/Changes.h"
#include "survey/measure/WorkerProcess.h"

namespace survey {

/// Lets the two environments take turns, prints the verdict and the table, and writes the files.
/// After a signal 128 and its number, which stops a bisection as well.
int versus(const VersusCommand& command, const Launch& launch);

/// The same of two files. A versus file speaks for its new side.
int compare(const CompareCommand& command);

}  // namespace survey
