#include <cstdlib>
#include <iostream>
#include <string_view>

#include <fmt/format.h>

#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"
#include "survey/CommandLine.h"
#include "survey/Report.h"
#include "survey/Run.h"
#include "survey/Versus.h"
#include "survey/plan/Words.h"
#include "survey/worker/Worker.h"

namespace {

using namespace survey;

/// How the program starts itself; its one argument is the channel's descriptor.
constexpr std::string_view kWorkerWord = "worker";

int listDevices() {
  fmt::print("{}\n", deviceList());
  return EXIT_SUCCESS;
}

/// Whatever keeps one from a verdict must not look like one.
template <typename Comparing>
int compared(const Comparing& comparing) {
  try {
    return comparing();
  } catch (const std::exception& error) {
    warn(error.what());
    return kUnusable;
  }
}

int follow(const Command& command) {
  if (const auto* const finished = std::get_if<Finished>(&command)) {
    fmt::print("{}", finished->text);
    return EXIT_SUCCESS;
  }
  if (std::holds_alternative<DevicesCommand>(command)) {
    return listDevices();
  }
  const Launch launch{{"/proc/self/exe", std::string(kWorkerWord)}, {}};
  if (const auto* const sides = std::get_if<VersusCommand>(&command)) {
    return compared([&] { return versus(*sides, launch); });
  }
  if (const auto* const files = std::get_if<CompareCommand>(&command)) {
    return compared([&] { return compare(*files); });
  }
  if (const auto* const page = std::get_if<ReportCommand>(&command)) {
    return report(*page);
  }
  return run(std::get<RunCommand>(command), launch);
}

}  // namespace

int main(int argc, char** argv) {
  occupyClosedStreams();
  try {
    if (argc == 3 && argv[1] == kWorkerWord) {
      return work(Channel(std::atoi(argv[2])));
    }
    return follow(parseCommandLine(argc, argv));
  } catch (const Unusable& reason) {
    warn(reason.what());
    return kUnusable;
  } catch (const std::exception& error) {
    endWith(error.what());
  }
}
