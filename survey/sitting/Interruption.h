/// Signals that ask the program to end, turned into something that can be waited for.
#pragma once

#include <csignal>

namespace survey {

/// A signal came; thrown where the program waits.
struct Interrupted {
  int signal;
};

/// While it lives, SIGINT, SIGTERM and SIGHUP interrupt no code; they make its descriptor readable.
/// One that was ignored at the start (nohup) stays so. Keep it until what a signal ends early is
/// written: the second Ctrl-C must not lose what the first one left.
class Interruption {
 public:
  /// Throws std::system_error.
  Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption();

  int get() const { return descriptor; }
  /// Throws Interrupted if a signal has come.
  void check() const;
  /// What was blocked before, for processes that are started.
  const sigset_t& originalMask() const { return original; }

 private:
  sigset_t original{};
  int descriptor = -1;
};

}  // namespace survey
