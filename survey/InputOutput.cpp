#include "survey/InputOutput.h"

#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/process/Sentences.h"
#include "survey/Program.h"
#include "survey/tell/Files.h"
#include "survey/tell/WholeFile.h"

namespace survey {
namespace {

std::string cannotBeWritten(const std::string& path, const std::system_error& error) {
  return fmt::format("{} cannot be written: {}.", path, error.code().message());
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
  return isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0');
}

bool wrote(const std::string& path, const std::function<std::string()>& content) {
  if (path.empty()) {
    return true;
  }
  try {
    writeWhole(path, content());
    return true;
  } catch (const std::system_error& error) {
    warn(cannotBeWritten(path, error));
    return false;
  }
}

bool printed(const std::string& text) {
  fmt::print("{}", text);
  if (std::fflush(stdout) == 0) {
    return true;
  }
  warn("standard output cannot be written to.");
  return false;
}

void requireReady(const SittingCommand& command) {
  if (!thisProgram().optimised && !command.unoptimised) {
    throw std::runtime_error(
        "this build is without optimisation, so its figures would be those of a slow program; "
        "build with CMAKE_BUILD_TYPE=Release, or insist with --unoptimised.");
  }
  for (const std::string& path : {command.outputs.json, command.csv, command.outputs.markdown}) {
    try {
      requirePlaceFor(path);
    } catch (const std::system_error& error) {
      throw std::runtime_error(cannotBeWritten(path, error));
    }
  }
}

}  // namespace survey
