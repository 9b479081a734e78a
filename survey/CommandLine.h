/// The survey's command line.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "survey/plan/Cells.h"
#include "survey/record/Comparison.h"

namespace survey {

constexpr double kDefaultThreshold = 5;
/// Milliseconds. Pairs of frames that a jump of the machine's speed spoils are few if they are
/// short.
constexpr double kFrameInTurns = 5;

/// What takes a sitting.
struct SittingCommand {
  std::vector<Cell> cells;
  Settings settings;
  std::string json;  ///< files to write; empty: none
  std::string csv;
  std::string markdown;
  bool quiet = false;        ///< no progress
  bool unoptimised = false;  ///< go on although the build is slow
};

/// `run`: take a survey.
struct RunCommand : SittingCommand {};

/// `versus`: let two environments take turns.
struct VersusCommand : SittingCommand {
  VersusCommand() { settings.frame = kFrameInTurns; }

  std::vector<std::string> base;  ///< NAME=value, of the workers of either side
  std::vector<std::string> newer;
  std::string baseName = "base";
  std::string newName = "new";
  double threshold = kDefaultThreshold;  ///< percent
};

/// `compare`: hold two files against each other.
struct CompareCommand {
  std::string base;  ///< a path
  std::string newer;
  double threshold = kDefaultThreshold;
  std::string json;
  std::string markdown;
};

/// `report`: make a page of files.
struct ReportCommand {
  std::vector<std::string> files;
  std::string html;
};

/// `devices`: list them.
struct DevicesCommand {};

/// Nothing is left to do but to print this and to end.
struct Finished {
  std::string text;
};

using Command = std::variant<RunCommand, VersusCommand, CompareCommand, ReportCommand,
                             DevicesCommand, Finished>;

/// Throws Unusable, with a sentence that names the culprit and the nearest word.
Command parseCommandLine(int argc, const char* const* argv);

}  // namespace survey
