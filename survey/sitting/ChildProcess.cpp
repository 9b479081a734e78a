#include "survey/sitting/ChildProcess.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/process/ForeignText.h"
#include "platform/process/WaitStatus.h"

namespace survey {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t kKeptWords = 4096;
constexpr std::size_t kLongestSentence = 240;
/// What a process gets between closing its socket and ending, to write its core for instance.
constexpr milliseconds kTimeToDie{2000};

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// The environment with some variables set; one that is named again replaces the earlier one.
std::vector<std::string> environmentWith(const std::vector<std::string>& added) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
  }
  for (const std::string& variable : added) {
    const std::string name = variable.substr(0, variable.find('=') + 1);
    std::erase_if(variables, [&](const std::string& other) { return other.starts_with(name); });
    variables.push_back(variable);
  }
  return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

/// Between fork and exec.
struct Child {
  pid_t parent;
  const char* path;
  int socket;
  int errors;
  const sigset_t* mask;
  char* const* arguments;
  char* const* environment;
  const char* failure;  ///< what to say where it cannot be executed, before the reason

  [[noreturn]] void run() const {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
      _exit(EXIT_FAILURE);
    }
    // A Ctrl-C goes to all processes of the terminal: the controller ends its workers itself.
    signal(SIGINT, SIG_IGN);
    signal(SIGQUIT, SIG_IGN);
    signal(SIGHUP, SIG_IGN);
    sigprocmask(SIG_SETMASK, mask, nullptr);
    // Where memory runs out, the worker has to go and not who reports it.
    constexpr char kFirstToGo[] = "500";
    const int score = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    [[maybe_unused]] const ssize_t written = write(score, kFirstToGo, sizeof kFirstToGo - 1);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    fcntl(socket, F_SETFD, 0);
    execve(path, arguments, environment);
    const char* const reason = std::strerror(errno);
    for (const char* const words : {failure, reason, ")"}) {
      [[maybe_unused]] const ssize_t told = write(STDERR_FILENO, words, std::strlen(words));
    }
    constexpr int kCannotExecute = 127;
    _exit(kCannotExecute);
  }
};

/// What the dynamic linker complains of in that line; empty if nothing. A path in it may be long.
std::string complaintIn(const std::string& line) {
  constexpr std::string_view kMark = "ERROR: ld.so: ";
  const std::size_t begin = line.find(kMark);
  return begin == std::string::npos ? ""
                                    : withoutFullStop(harmless(line.substr(begin + kMark.size())));
}

/// The status of waitpid; none of one that does not end for a while.
std::optional<int> reap(pid_t child) {
  int status = 0;
  const auto deadline = steady_clock::now() + kTimeToDie;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (steady_clock::now() > deadline) {
      return std::nullopt;
    }
    std::this_thread::sleep_for(milliseconds(1));
  }
  return status;
}

}  // namespace

ChildProcess::ChildProcess(const Launch& launch, const Descriptor& socket, const sigset_t& mask) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    fail("pipe2");
  }
  errors_ = Descriptor(ends[0]);
  const Descriptor itsErrors(ends[1]);
  fcntl(errors_.get(), F_SETFL, O_NONBLOCK);
  std::vector<std::string> arguments = launch.command;
  arguments.front() = program_invocation_name;  // its sentences begin with that, too
  arguments.push_back(std::to_string(socket.get()));
  std::vector<std::string> variables = environmentWith(launch.environment);
  const std::vector<char*> argumentPointers = pointersTo(arguments);
  const std::vector<char*> variablePointers = pointersTo(variables);
  // Under the program's name, as a sentence of the child's own.
  std::string failure = std::string(program_invocation_short_name) + ": " + launch.command.front();
  failure += launch.command.front().starts_with("/proc/")
                 ? " cannot be executed, through which the program starts itself: /proc has to be "
                   "mounted and readable ("
                 : " cannot be executed (";
  const Child child{getpid(),
                    launch.command.front().c_str(),
                    socket.get(),
                    itsErrors.get(),
                    &mask,
                    argumentPointers.data(),
                    variablePointers.data(),
                    failure.c_str()};
  id_ = fork();
  if (id_ == 0) {
    child.run();
  }
  if (id_ < 0) {
    fail("fork");
  }
}

void ChildProcess::listen() {
  char words[kKeptWords];
  for (ssize_t count = 0; (count = read(errors_.get(), words, sizeof words)) > 0;) {
    lastWords_.append(words, static_cast<std::size_t>(count));
    keepComplaints(std::string_view(words, static_cast<std::size_t>(count)));
    if (lastWords_.size() > kKeptWords) {
      lastWords_.erase(0, lastWords_.size() - kKeptWords);
    }
  }
}

void ChildProcess::keepComplaints(std::string_view words) {
  for (const char character : words) {
    if (character != '\n') {
      line_.append(line_.size() < kKeptWords ? 1 : 0, character);
    } else if (std::string complaint = complaintIn(std::exchange(line_, "")); !complaint.empty()) {
      complaints_.push_back(std::move(complaint));
    }
  }
}

std::string ChildProcess::lastSentence() const {
  const std::string words = harmless(lastWords_, LineEnds::kKept);
  const std::size_t end = words.find_last_not_of(" \n");
  if (end == std::string::npos) {
    return "";
  }
  const std::size_t before = words.find_last_of('\n', end);
  const std::size_t begin = before == std::string::npos ? 0 : before + 1;
  return words.substr(begin, std::min(end + 1 - begin, kLongestSentence));
}

std::string ChildProcess::howItEnded() {
  const auto status = reap(id_);
  if (!status) {
    return "closed its socket";
  }
  id_ = -1;
  return ::howItEnded(*status);
}

void ChildProcess::kill() {
  if (id_ > 0) {
    ::kill(id_, SIGKILL);
    reap(id_);  // one that is stuck inside the kernel stays behind until that lets it go
    id_ = -1;
  }
}

std::string withoutFullStop(std::string_view sentence) {
  return std::string(sentence.substr(0, sentence.size() - (sentence.ends_with('.') ? 1 : 0)));
}

}  // namespace survey
