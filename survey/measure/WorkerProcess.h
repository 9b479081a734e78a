/// A worker as the controller has it: a process that answers requests, or a reason why not.
#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>
#include <sys/types.h>

#include "survey/measure/Interruption.h"
#include "survey/protocol/Channel.h"
#include "survey/protocol/Messages.h"

namespace survey {

/// The worker is of no more use; the text says why, with the last that it wrote on standard error.
class WorkerFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How workers are started.
struct Launch {
  std::vector<std::string> command;      ///< a path and arguments; the channel's number follows
  std::vector<std::string> environment;  ///< NAME=value, set beside what is there
};

/// Ends with the object, and with this process whichever way that ends. Its standard input and
/// output are empty, so it can neither take what is typed nor write among the results.
class WorkerProcess {
 public:
  /// Throws std::system_error. A command that cannot be executed is a fault of the first answer.
  WorkerProcess(const Launch& launch, const Interruption& endingSignals);
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;
  ~WorkerProcess();

  /// Throws WorkerFault when there is none in that time, and Interrupted when a signal comes.
  template <typename Answer>
  Answer ask(const Request& request, std::chrono::milliseconds patience) {
    const nlohmann::json answer = exchange(toJson(request), patience);
    try {
      return answer.get<Answer>();
    } catch (const nlohmann::json::exception&) {
      fault("sent what is no answer");
    }
  }

  /// What the dynamic linker had to say of libraries that it was to load and could not.
  const std::vector<std::string>& linkersComplaints() const { return complaints; }

  /// Ends it, and throws WorkerFault with that reason.
  [[noreturn]] void fault(std::string reason);

 private:
  nlohmann::json exchange(const nlohmann::json& request, std::chrono::milliseconds patience);
  /// Waits until the channel is readable; whether that came about in time.
  bool waitForAnswer(std::chrono::milliseconds patience);
  void keepLastWords();
  void keepComplaints(std::string_view words);
  std::string howItEnded();
  /// Waits a while for its end; the status of waitpid.
  std::optional<int> reap();
  void kill();

  const Interruption& interruption;
  Channel channel;
  int errors = -1;  ///< reads what the worker writes on standard error
  std::string lastWords;
  std::string line;  ///< that is not at its end yet
  std::vector<std::string> complaints;
  pid_t id = -1;  ///< -1 once it has ended
};

}  // namespace survey
