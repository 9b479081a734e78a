/// The survey's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "survey/plan/Cells.h"
#include "survey/record/Record.h"

namespace survey {

/// `run`: take a survey.
struct RunCommand {
  std::vector<Cell> cells;
  Settings settings;
  std::string json;  ///< files to write; empty: none
  std::string csv;
  std::string markdown;
  bool quiet = false;        ///< no progress
  bool unoptimised = false;  ///< go on although the build is slow
};

/// `devices`: list them.
struct DevicesCommand {};

/// Nothing is left to do but to print this and to end.
struct Finished {
  std::string text;
};

using Command = std::variant<RunCommand, DevicesCommand, Finished>;

/// Throws Unusable, with a sentence that names the culprit and the nearest word.
Command parseCommandLine(int argc, const char* const* argv);

}  // namespace survey
