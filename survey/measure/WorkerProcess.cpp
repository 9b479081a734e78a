#include "survey/measure/WorkerProcess.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it
#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/process/WaitStatus.h"

namespace survey {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t kKeptWords = 4096;
constexpr std::size_t kLongestSentence = 240;
/// What a process gets between closing its channel and ending, to write its core for instance.
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
  int channel;
  int errors;
  const sigset_t* mask;
  char* const* arguments;
  char* const* environment;

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
    fcntl(channel, F_SETFD, 0);
    execve(path, arguments, environment);
    const char* const reason = std::strerror(errno);
    [[maybe_unused]] const ssize_t told = write(STDERR_FILENO, reason, std::strlen(reason));
    constexpr int kCannotExecute = 127;
    _exit(kCannotExecute);
  }
};

std::string withoutControls(std::string words) {
  std::replace_if(
      words.begin(), words.end(),
      [](char character) {
        return static_cast<unsigned char>(character) < ' ' && character != '\n';
      },
      ' ');
  return words;
}

/// The last line that says something, without control characters, and not too long.
std::string lastSentence(const std::string& raw) {
  const std::string words = withoutControls(raw);
  const std::size_t end = words.find_last_not_of(" \n");
  if (end == std::string::npos) {
    return "";
  }
  const std::size_t before = words.find_last_of('\n', end);
  const std::size_t begin = before == std::string::npos ? 0 : before + 1;
  return words.substr(begin, std::min(end + 1 - begin, kLongestSentence));
}

std::string withoutFullStop(std::string_view sentence) {
  return std::string(sentence.substr(0, sentence.size() - (sentence.ends_with('.') ? 1 : 0)));
}

/// What the dynamic linker complains of in that line; empty if nothing. A path in it may be long.
std::string complaintIn(const std::string& line) {
  constexpr std::string_view kMark = "ERROR: ld.so: ";
  const std::size_t begin = line.find(kMark);
  return begin == std::string::npos
             ? ""
             : withoutFullStop(withoutControls(line.substr(begin + kMark.size())));
}

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

WorkerProcess::WorkerProcess(const Launch& launch, const Interruption& endingSignals)
    : interruption(endingSignals), channel(-1) {
  auto [mine, workers] = Channel::pair();
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    fail("pipe2");
  }
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  std::vector<std::string> arguments = launch.command;
  arguments.front() = program_invocation_name;  // a worker's sentences begin with it, too
  arguments.push_back(std::to_string(workers.get()));
  std::vector<std::string> variables = environmentWith(launch.environment);
  const std::vector<char*> argumentPointers = pointersTo(arguments);
  const std::vector<char*> variablePointers = pointersTo(variables);
  const Child child{getpid(),
                    launch.command.front().c_str(),
                    workers.get(),
                    ends[1],
                    &interruption.originalMask(),
                    argumentPointers.data(),
                    variablePointers.data()};
  id = fork();
  if (id == 0) {
    child.run();
  }
  close(ends[1]);
  errors = ends[0];
  if (id < 0) {
    close(errors);
    fail("fork");
  }
  channel = std::move(mine);
}

WorkerProcess::~WorkerProcess() {
  kill();
  close(errors);
}

nlohmann::json WorkerProcess::exchange(const nlohmann::json& request, milliseconds patience) {
  if (!channel.send(request)) {
    fault(howItEnded());
  }
  if (!waitForAnswer(patience)) {
    fault(
        fmt::format("did not answer within {:g} s", static_cast<double>(patience.count()) / 1000));
  }
  const auto message = channel.receive();
  if (!message) {
    fault(howItEnded());
  }
  if (message->is_object() && message->contains("answer")) {
    return message->at("answer");
  }
  if (message->is_object() && message->contains("failure") && message->at("failure").is_string()) {
    const std::string sentence = message->at("failure");
    kill();
    throw WorkerFault(sentence);
  }
  fault("sent what is no answer");
}

bool WorkerProcess::waitForAnswer(milliseconds patience) {
  const auto deadline = steady_clock::now() + patience;
  bool listening = true;  // to standard error, until that is closed
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    pollfd waiting[] = {{channel.get(), POLLIN, 0},
                        {interruption.get(), POLLIN, 0},
                        {listening ? errors : -1, POLLIN, 0}};
    const int ready =
        poll(waiting, std::size(waiting), std::max(0, static_cast<int>(left.count())));
    if (ready < 0 && errno != EINTR) {
      fail("poll");
    }
    interruption.check();
    if (waiting[2].revents != 0) {
      keepLastWords();
      listening = (waiting[2].revents & POLLIN) != 0;
    }
    if (waiting[0].revents != 0) {
      return true;
    }
    if (left.count() <= 0) {
      return false;
    }
  }
}

void WorkerProcess::keepLastWords() {
  char words[kKeptWords];
  for (ssize_t count = 0; (count = read(errors, words, sizeof words)) > 0;) {
    lastWords.append(words, static_cast<std::size_t>(count));
    keepComplaints(std::string_view(words, static_cast<std::size_t>(count)));
    if (lastWords.size() > kKeptWords) {
      lastWords.erase(0, lastWords.size() - kKeptWords);
    }
  }
}

void WorkerProcess::keepComplaints(std::string_view words) {
  for (const char character : words) {
    if (character != '\n') {
      line.append(line.size() < kKeptWords ? 1 : 0, character);
    } else if (std::string complaint = complaintIn(std::exchange(line, "")); !complaint.empty()) {
      complaints.push_back(std::move(complaint));
    }
  }
}

/// For one that has closed its channel.
std::string WorkerProcess::howItEnded() {
  const auto status = reap();
  return status ? ::howItEnded(*status) : "closed its channel";
}

std::optional<int> WorkerProcess::reap() {
  int status = 0;
  const auto deadline = steady_clock::now() + kTimeToDie;
  while (waitpid(id, &status, WNOHANG) == 0) {
    if (steady_clock::now() > deadline) {
      return std::nullopt;
    }
    std::this_thread::sleep_for(milliseconds(1));
  }
  id = -1;
  return status;
}

void WorkerProcess::fault(std::string reason) {
  kill();
  keepLastWords();
  const std::string sentence = lastSentence(lastWords);
  if (const std::string own = ownSentence(sentence); !own.empty()) {
    reason = own;
  } else if (!sentence.empty()) {
    reason += fmt::format(", after \"{}\"", sentence);
  }
  throw WorkerFault(reason);
}

void WorkerProcess::kill() {
  if (id > 0) {
    ::kill(id, SIGKILL);
    reap();  // one that is stuck inside the kernel stays behind until that lets it go
    id = -1;
  }
}

}  // namespace survey
