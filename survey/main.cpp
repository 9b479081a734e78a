#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include <fmt/format.h>

#include "platform/process/ForeignText.h"
#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"
#include "survey/CommandLine.h"
#include "survey/Commands.h"
#include "survey/InputOutput.h"
#include "survey/data/Words.h"
#include "survey/judge/Changes.h"
#include "survey/worker/Worker.h"

namespace {

using namespace survey;

/// How the program starts itself; its one argument is the socket's descriptor.
constexpr std::string_view kWorkerWord = "worker";

int listDevices() {
  fmt::print("{}\n", harmless(deviceList(), LineEnds::kKept));
  return EXIT_SUCCESS;
}

/// Whether it makes a verdict: whatever keeps it from one must not look like one.
bool makesVerdict(const Command& command) {
  const auto* const sitting = std::get_if<SittingCommand>(&command);
  return std::holds_alternative<CompareCommand>(command) ||
         (sitting != nullptr && sitting->plan.sides.size() > 1);
}

int follow(const Command& command) {
  struct Follow {
    int operator()(const Finished& finished) const {
      fmt::print("{}", finished.text);
      return EXIT_SUCCESS;
    }
    int operator()(const DevicesCommand& /*devices*/) const { return listDevices(); }
    int operator()(const CompareCommand& files) const { return compare(files); }
    int operator()(const ReportCommand& page) const { return report(page); }
    int operator()(const SittingCommand& sitting) const {
      return takeSitting(sitting, {"/proc/self/exe", std::string(kWorkerWord)});
    }
  };
  try {
    return std::visit(Follow(), command);
  } catch (const std::exception& error) {
    if (!makesVerdict(command)) {
      throw;
    }
    warn(error.what());
    return kUnusable;
  }
}

}  // namespace

int main(int argc, char** argv) {
  occupyClosedStreams();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that grows too large is one that cannot be written
  try {
    if (argc == 3 && argv[1] == kWorkerWord) {
      return work(Descriptor(std::atoi(argv[2])));
    }
    return follow(parseCommandLine(argc, argv));
  } catch (const Unusable& reason) {
    warn(reason.what());
    return kUnusable;
  } catch (const CannotRead& reason) {
    warn(reason.what());
    return kUnusable;
  } catch (const std::exception& error) {
    endWith(error.what());
  }
}
