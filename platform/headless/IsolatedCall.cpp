#include "platform/headless/IsolatedCall.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <sstream>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/headless/Trouble.h"
#include "platform/process/Descriptor.h"
#include "platform/process/WaitStatus.h"

namespace {

using Clock = std::chrono::steady_clock;

/// The first byte of what a child sends.
constexpr char kAnswer = 'a';
constexpr char kTrouble = 't';

const char* const kPatience = "SORVANTA_PATIENCE";

/// The child's part. Nothing of the parent's may happen in it: no output, no handlers at exit, no
/// core file, no life after the parent's.
[[noreturn]] void answer(const std::function<std::string()>& work, int to, int said) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const rlimit noCore = {};
  setrlimit(RLIMIT_CORE, &noCore);
  const int nothing = open("/dev/null", O_RDWR);
  dup2(nothing, STDIN_FILENO);
  dup2(nothing, STDOUT_FILENO);
  dup2(said, STDERR_FILENO);

  std::string message;
  try {
    message = kAnswer + work();
  } catch (const std::exception& trouble) {
    message = kTrouble + std::string(trouble.what());
  }
  for (std::string_view left = message; !left.empty();) {
    const ssize_t written = write(to, left.data(), left.size());
    if (written <= 0) {
      _exit(EXIT_FAILURE);
    }
    left.remove_prefix(static_cast<std::size_t>(written));
  }
  _exit(EXIT_SUCCESS);
}

/// All that comes until the end; nothing where that does not come in time.
std::optional<std::string> readAll(int from, Clock::time_point deadline) {
  std::string text;
  std::array<char, 4096> part{};
  while (true) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd waiting = {from, POLLIN, 0};
    const int ready = left.count() > 0 ? poll(&waiting, 1, static_cast<int>(left.count())) : 0;
    if (ready == 0) {
      return std::nullopt;
    }
    const ssize_t length = ready > 0 ? read(from, part.data(), part.size()) : -1;
    if (length == 0) {
      return text;
    }
    if (length > 0) {
      text.append(part.data(), static_cast<std::size_t>(length));
    } else if (errno != EINTR) {
      return std::nullopt;
    }
  }
}

/// The status of a child that has ended.
int statusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return EXIT_SUCCESS;  // someone else has taken it; what the child sent tells the rest
    }
  }
  return status;
}

std::string lastLineSaid(int file) {
  std::array<char, 1024> tail{};
  const off_t size = lseek(file, 0, SEEK_END);
  const off_t from = std::max<off_t>(0, size - static_cast<off_t>(tail.size()));
  const ssize_t length = pread(file, tail.data(), tail.size(), from);
  std::string_view text(tail.data(), static_cast<std::size_t>(std::max<ssize_t>(0, length)));
  const std::size_t last = text.find_last_not_of(" \n");
  text = text.substr(0, last + 1);
  return std::string(text.substr(text.rfind('\n') + 1));
}

/// 15, or 0.05
std::string secondsIn(std::chrono::milliseconds time) {
  std::ostringstream text;
  text << static_cast<double>(time.count()) / 1000;
  return text.str();
}

}  // namespace

std::chrono::milliseconds usualPatience() {
  constexpr double kUsual = 15;
  constexpr double kMost = 1e6;
  const char* const value = std::getenv(kPatience);
  const double wanted = value != nullptr ? std::strtod(value, nullptr) : kUsual;
  return std::chrono::milliseconds(
      static_cast<std::int64_t>(1000 * (wanted > 0 ? std::min(wanted, kMost) : kUsual)));
}

std::string callIsolated(const std::function<std::string()>& work, const Suspect& suspect,
                         std::chrono::milliseconds patience) {
  int ends[2] = {-1, -1};
  const int failed = pipe2(ends, O_CLOEXEC);
  const Descriptor from(ends[0]);
  Descriptor to(ends[1]);
  const Descriptor said(memfd_create("said", MFD_CLOEXEC));
  const pid_t child = failed == 0 ? fork() : -1;
  if (child < 0) {
    throw HeadlessTrouble("a process in which to try the graphics driver cannot be started (" +
                          std::string(std::strerror(errno)) + "); end other programs.");
  }
  if (child == 0) {
    answer(work, to.get(), said.get());
  }
  to.close();  // else its end would never be read

  const std::optional<std::string> message = readAll(from.get(), Clock::now() + patience);
  if (!message) {
    // Not waited for: a process that hangs in the kernel cannot even be killed.
    kill(child, SIGKILL);
  }
  const int status = message ? statusOf(child) : EXIT_FAILURE;
  if (status == EXIT_SUCCESS && message->starts_with(kAnswer)) {
    return message->substr(1);
  }
  std::string sentence =
      status == EXIT_SUCCESS && message->starts_with(kTrouble) ? message->substr(1)
      : message ? suspect.who + ' ' + howItEnded(status) + "; " + suspect.cure + '.'
                : suspect.who + " does not answer within " + secondsIn(patience) + " s; " +
                      suspect.cure + ", or give it more with " + kPatience + " where it is slow.";
  if (const std::string line = lastLineSaid(said.get()); !line.empty()) {
    sentence += " It said: " + line;
  }
  throw HeadlessTrouble(sentence);
}
