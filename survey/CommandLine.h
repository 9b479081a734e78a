/// The survey's command line.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

constexpr double kDefaultThreshold = 5;
/// Milliseconds. Pairs of frames that a jump of the machine's speed spoils are few if they are
/// short.
constexpr double kFrameInTurns = 5;

/// Files to write; none for an empty path, standard output for "-".
struct Outputs {
  std::string json{};
  std::string markdown{};
  std::string csv{};
  std::string junit{};
  std::string html{};
  bool line = false;  ///< on standard output a line a change, and nothing else

  std::vector<std::string> paths() const { return {json, markdown, csv, junit, html}; }
  /// Whether one of them goes there, so that nothing else must.
  bool takeStandardOutput() const {
    const std::vector<std::string> all = paths();
    return std::find(all.begin(), all.end(), "-") != all.end();
  }
};

/// `run`, `versus` and `advise`: take a sitting, of one side or of several.
struct SittingCommand {
  Record plan;           ///< its settings, cells, and the names and environments of its sides
  double threshold = 0;  ///< percent; of several sides
  Outputs outputs;
  bool quiet = false;  ///< no progress
  /// Names of cells of which it shall be found out why they changed; empty: of those that changed
  /// most; none: of none.
  std::optional<std::vector<std::string>> explain{};
  std::optional<Question> question{};  ///< of `advise`
  bool unoptimised = false;            ///< go on although the build is slow
};

/// `compare`: hold files against each other, one or several a side.
struct CompareCommand {
  std::vector<std::string> base;  ///< paths
  std::vector<std::string> newer;
  double threshold = kDefaultThreshold;
  Outputs outputs;
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

using Command =
    std::variant<SittingCommand, CompareCommand, ReportCommand, DevicesCommand, Finished>;

/// Throws Unusable, with a sentence that names the culprit and the nearest word.
Command parseCommandLine(int argc, const char* const* argv);

}  // namespace survey
