/// A program that runs beside this one, and what it says on standard error.
#pragma once

#include <csignal>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "platform/process/Descriptor.h"

namespace survey {

/// Ends with the object, and with this process whichever way that ends. Its standard input and
/// output are empty, so it can neither take what is typed nor write among the results.
class ChildProcess {
 public:
  /// How it is started.
  struct Launch {
    std::vector<std::string> command;      ///< a path and arguments; the socket's number follows
    std::vector<std::string> environment;  ///< NAME=value, set beside what is there
  };

  /// Passes `socket` on; `mask` is what signals are blocked in it. Throws std::system_error. A
  /// command that cannot be executed ends the child, with the reason as its last sentence.
  ChildProcess(const Launch& launch, const Descriptor& socket, const sigset_t& mask);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() { kill(); }

  /// Readable when it has said something.
  const Descriptor& words() const { return errors_; }
  /// Takes in what it has said since.
  void listen();
  /// The last line that says something, without control characters, and not too long; empty for
  /// none.
  std::string lastSentence() const;
  /// What the dynamic linker had to say of libraries that it was to load and could not.
  const std::vector<std::string>& linkersComplaints() const { return complaints_; }

  /// Waits a while for the end of one that has closed its socket: "died of SIGSEGV (Segmentation
  /// fault)".
  std::string howItEnded();
  void kill();

 private:
  void keepComplaints(std::string_view words);

  Descriptor errors_;
  std::string lastWords_;
  std::string line_;  ///< that is not at its end yet
  std::vector<std::string> complaints_;
  pid_t id_ = -1;  ///< -1 once it has ended
};

/// The sentence without its full stop.
std::string withoutFullStop(std::string_view sentence);

}  // namespace survey
