#include "survey/sitting/Worker.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <system_error>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it
#include <fmt/format.h>
#include <poll.h>

namespace survey {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A worker's own last sentence, which says more than how it ended; empty for what is a driver's.
std::string ownSentence(std::string_view sentence) {
  const std::string name = fmt::format("{}: ", program_invocation_short_name);
  if (!sentence.starts_with(name)) {
    return "";
  }
  sentence.remove_prefix(name.size());
  return withoutFullStop(sentence);
}

}  // namespace

Worker::Worker(std::size_t ofSide, const ChildProcess::Launch& launch,
               const Interruption& endingSignals)
    : Worker(ofSide, launch, endingSignals, socketPair()) {}

Worker::Worker(std::size_t ofSide, const ChildProcess::Launch& launch,
               const Interruption& endingSignals, std::pair<Descriptor, Descriptor> sockets)
    : side(ofSide),
      interruption(endingSignals),
      socket(std::move(sockets.first)),
      process(launch, sockets.second, interruption.originalMask()) {}

Driver Worker::begin(const Begin& begin, milliseconds patience) {
  return ask<Driver>(requestOf(begin), patience);
}

CellAnswer Worker::set(const Cell& cell, milliseconds patience) {
  return ask<CellAnswer>(requestOf(cell), patience);
}

Frame Worker::draw(std::chrono::microseconds leastTime, milliseconds patience) {
  return ask<Frame>(requestOf(leastTime), patience);
}

Profile Worker::profile(std::chrono::microseconds leastTime, int frames, milliseconds patience) {
  return ask<Profile>(requestOfProfile(leastTime, frames), patience);
}

template <typename Answer>
Answer Worker::ask(const std::string& request, milliseconds patience) {
  if (!sendPacket(socket, request)) {
    fault(process.howItEnded());
  }
  if (!waitForAnswer(patience)) {
    fault(
        fmt::format("did not answer within {:g} s", static_cast<double>(patience.count()) / 1000));
  }
  const auto packet = receivePacket(socket);
  if (!packet) {
    fault(process.howItEnded());
  }
  try {
    if (auto answer = answerIn<Answer>(*packet)) {
      return *std::move(answer);
    }
  } catch (const Failure& failure) {
    process.kill();
    throw WorkerFault(withoutFullStop(failure.what()), side);
  }
  fault("sent what is no answer");
}

bool Worker::waitForAnswer(milliseconds patience) {
  constexpr milliseconds kFarTooLate{1000};
  auto deadline = steady_clock::now() + patience;
  bool listening = true;  // to standard error, until that is closed
  for (;;) {
    const auto began = steady_clock::now();
    const auto left = std::chrono::ceil<milliseconds>(deadline - began);
    pollfd waiting[] = {{socket.get(), POLLIN, 0},
                        {interruption.get(), POLLIN, 0},
                        {listening ? process.words().get() : -1, POLLIN, 0}};
    const int ready =
        poll(waiting, std::size(waiting), std::max(0, static_cast<int>(left.count())));
    if (ready < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    interruption.check();
    if (waiting[2].revents != 0) {
      process.listen();
      listening = (waiting[2].revents & POLLIN) != 0;
    }
    if (waiting[0].revents != 0) {
      return true;
    }
    if (left.count() <= 0) {
      return false;
    }
    // Stopped meanwhile, as the worker was (Ctrl-Z): that is not the worker's silence.
    if (steady_clock::now() - began > left + kFarTooLate) {
      deadline = steady_clock::now() + patience;
    }
  }
}

void Worker::fault(std::string reason) {
  process.kill();
  process.listen();
  const std::string sentence = process.lastSentence();
  if (const std::string own = ownSentence(sentence); !own.empty()) {
    reason = own;
  } else if (!sentence.empty()) {
    reason += fmt::format(", after \"{}\"", sentence);
  }
  throw WorkerFault(reason, side);
}

}  // namespace survey
