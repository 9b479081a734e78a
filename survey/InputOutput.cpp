#include "survey/InputOutput.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/process/Sentences.h"
#include "survey/Program.h"
#include "survey/data/Words.h"
#include "survey/tell/Files.h"
#include "survey/tell/WholeFile.h"

namespace survey {
namespace {

std::string cannotBeWritten(const std::string& path, const std::system_error& error) {
  return fmt::format("{} cannot be written: {}.", path, error.code().message());
}

constexpr std::string_view kStandardOutput = "-";

bool isSameFile(const std::string& one, const std::string& other) {
  std::error_code unknown;
  return one == other || std::filesystem::equivalent(one, other, unknown);
}

/// Whether it begins as a result file does.
bool holdsResult(const std::string& path) {
  constexpr std::string_view kBeginning = "{\n\"context\":";
  std::string beginning(kBeginning.size(), ' ');
  return std::filesystem::is_regular_file(path) &&
         std::ifstream(path).read(beginning.data(), std::ssize(beginning)) &&
         beginning == kBeginning;
}

}  // namespace

Result resultIn(const std::string& path) {
  try {
    return resultOf(wholeFile(path));
  } catch (const std::system_error& error) {
    throw CannotRead(fmt::format("{} cannot be read: {}", path, error.code().message()));
  } catch (const std::runtime_error& error) {
    throw CannotRead(fmt::format("{}: {}", path, error.what()));
  }
}

bool wantsColours() {
  const char* const noColour = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0') &&
         (terminal == nullptr || terminal != std::string_view("dumb"));
}

bool wrote(const std::string& path, const std::function<std::string()>& content) {
  if (path.empty()) {
    return true;
  }
  if (path == kStandardOutput) {
    return printed(content(), false);
  }
  try {
    writeWhole(path, content());
    return true;
  } catch (const std::system_error& error) {
    warn(cannotBeWritten(path, error));
    return false;
  }
}

bool keptOrWrote(const std::string& path, const std::function<std::string()>& content) {
  if (!std::filesystem::is_regular_file(path)) {
    return wrote(path, content);
  }
  warn(fmt::format("nothing was measured; {} stays as it was.", path));
  return false;
}

bool printed(const std::string& text, bool onStandardError) {
  FILE* const stream = onStandardError ? stderr : stdout;
  fmt::print(stream, "{}", text);
  if (std::fflush(stream) == 0) {
    return true;
  }
  warn("standard output cannot be written to.");
  return false;
}

void requirePlacesFor(const Outputs& outputs, const std::vector<std::string>& inputs) {
  std::vector<std::string> taken = inputs;
  for (const std::string& path : outputs.paths()) {
    if (path.empty()) {
      continue;
    }
    if (std::any_of(taken.begin(), taken.end(),
                    [&](const std::string& other) { return isSameFile(path, other); })) {
      throw Unusable(
          fmt::format("{} is named twice; what is written needs a file of its own", path));
    }
    taken.push_back(path);
    if (path == kStandardOutput) {
      continue;
    }
    if (path != outputs.json && holdsResult(path)) {
      throw Unusable(
          fmt::format("{} holds a result, which would be lost; give another name", path));
    }
    try {
      requirePlaceFor(path);
    } catch (const std::system_error& error) {
      throw std::runtime_error(cannotBeWritten(path, error));
    }
  }
}

void requireReady(const SittingCommand& command) {
  if (!thisProgram().optimised && !command.unoptimised) {
    throw std::runtime_error(
        "this build is without optimisation, so its figures would be those of a slow program; "
        "build with CMAKE_BUILD_TYPE=Release, or insist with --unoptimised.");
  }
  requirePlacesFor(command.outputs, {});
}

}  // namespace survey
