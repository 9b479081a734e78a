#include "survey/show/Sides.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace survey {
namespace {

std::string sideOf(const Side& side) {
  const std::string environment =
      side.record.settings.environment.empty()
          ? ""
          : fmt::format(" (with {})", fmt::join(side.record.settings.environment, " "));
  const Driver& driver = side.record.driver;
  return fmt::format(
      "{}: {}{}", side.name,
      !driver.renderer.empty()             ? fmt::format("{}, {}", driver.renderer, driver.version)
      : side.record.endingSentence.empty() ? "no worker was started"
                                           : "no worker came up: " + side.record.endingSentence,
      environment);
}

/// The driver's files that this side loaded and the other one did not.
std::string ownFilesOf(const Driver& driver, const Driver& other) {
  std::vector<std::string> own;
  std::copy_if(driver.libraries.begin(), driver.libraries.end(), std::back_inserter(own),
               [&](const std::string& path) {
                 return std::find(other.libraries.begin(), other.libraries.end(), path) ==
                        other.libraries.end();
               });
  return own.empty() ? "" : fmt::format("; its own files: {}", fmt::join(own, " "));
}

}  // namespace

std::vector<std::string> sidesOf(const Comparison& comparison) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  if (base.driver.renderer.empty() || newer.driver.renderer.empty()) {
    return {sideOf(comparison.base) + '.', sideOf(comparison.newer) + '.'};
  }
  std::vector<std::string> sentences{
      sideOf(comparison.base) + ownFilesOf(base.driver, newer.driver) + '.',
      sideOf(comparison.newer) + ownFilesOf(newer.driver, base.driver) + '.'};
  if (base.driver == newer.driver) {
    sentences.push_back(fmt::format(
        "THE TWO SIDES ARE THE SAME DRIVER: {} and {} have the same GL strings, the same device, "
        "and loaded the same files{}.",
        comparison.base.name, comparison.newer.name,
        base.settings.environment == newer.settings.environment ? ""
                                                                : ", in environments that differ"));
  }
  return sentences;
}

std::vector<std::string> differencesOf(const Comparison& comparison) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  std::vector<std::string> sentences;
  const auto add = [&](const char* what, const std::string& one, const std::string& other) {
    if (one != other) {
      sentences.push_back(fmt::format("The sittings differ in {}: {} and {}.", what,
                                      one.empty() ? "none" : one, other.empty() ? "none" : other));
    }
  };
  add("the host", base.machine.host, newer.machine.host);
  add("the kernel", base.machine.kernel, newer.machine.kernel);
  add("the processor", base.machine.processor, newer.machine.processor);
  add("the number of processors", std::to_string(base.machine.processors),
      std::to_string(newer.machine.processors));
  add("the power source", base.machine.powerSource, newer.machine.powerSource);
  add("the processor's governor", base.before.governor, newer.before.governor);
  add("the survey's version", base.program.version, newer.program.version);
  add("the survey's commit", base.program.commit, newer.program.commit);
  add("the compiler's flags", base.program.flags, newer.program.flags);
  add("the length of a frame", fmt::format("{:g} ms", base.settings.frame),
      fmt::format("{:g} ms", newer.settings.frame));
  add("where they draw", base.settings.onScreen ? "on screen" : "offscreen",
      newer.settings.onScreen ? "on screen" : "offscreen");
  return sentences;
}

}  // namespace survey
