#include <cstdlib>
#include <iostream>
#include <string_view>

#include <fmt/format.h>

#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"
#include "survey/CommandLine.h"
#include "survey/Run.h"
#include "survey/plan/Words.h"
#include "survey/worker/Worker.h"

namespace {

using namespace survey;

constexpr int kUnusable = 255;
/// How the program starts itself; its one argument is the channel's descriptor.
constexpr std::string_view kWorkerWord = "worker";

int listDevices() {
  try {
    fmt::print("{}\n", deviceList());
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    endWith(error.what());
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
  return run(std::get<RunCommand>(command), {{"/proc/self/exe", std::string(kWorkerWord)}, {}});
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
