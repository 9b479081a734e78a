/// Each command from its settings to its files; all return the exit status.
#pragma once

#include <string>
#include <vector>

#include "survey/CommandLine.h"

namespace survey {

/// `run`, `versus` and `advise`: takes the sitting, with workers that `worker` starts, prints the
/// answer and the table on standard output and what has to be known beside them on standard error,
/// and writes the files. After a signal the status is 128 and its number.
///
/// With several sides all statuses are made for a bisection: 0 nothing is slower, 1 something is or
/// fails on a new side alone, 125 undecided, 255 the command line or the base side cannot be used.
int takeSitting(const SittingCommand& command, const std::vector<std::string>& worker);

/// `compare`: the same of files, with the statuses of several sides. Of a file with several sides
/// the last one speaks. Throws CannotRead.
int compare(const CompareCommand& command);

/// `report`: makes the page. Throws CannotRead.
int report(const ReportCommand& command);

}  // namespace survey
