/// A worker as the controller has it: it answers requests, or there is a reason why not.
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/sitting/ChildProcess.h"
#include "survey/sitting/Interruption.h"
#include "survey/worker/Protocol.h"

namespace survey {

/// The worker is of no more use; the text says why, with the last that it wrote on standard error.
class WorkerFault : public std::runtime_error {
 public:
  WorkerFault(const std::string& reason, std::size_t itsSide)
      : std::runtime_error(reason), side(itsSide) {}

  std::size_t side;  ///< the worker's
};

/// All requests throw WorkerFault where there is no answer in the time of `patience`, and
/// Interrupted when a signal comes.
class Worker {
 public:
  /// Throws std::system_error. A command that cannot be executed is a fault of the first answer.
  Worker(std::size_t ofSide, const ChildProcess::Launch& launch, const Interruption& endingSignals);

  Driver begin(const Begin& begin, std::chrono::milliseconds patience);
  CellAnswer set(const Cell& cell, std::chrono::milliseconds patience);
  Frame draw(std::chrono::microseconds leastTime, std::chrono::milliseconds patience);
  Profile profile(std::chrono::microseconds leastTime, int frames,
                  std::chrono::milliseconds patience);

  /// What the dynamic linker had to say of libraries that it was to load and could not.
  const std::vector<std::string>& linkersComplaints() const { return process.linkersComplaints(); }

  /// Ends it, and throws WorkerFault with that reason.
  [[noreturn]] void fault(std::string reason);

 private:
  Worker(std::size_t ofSide, const ChildProcess::Launch& launch, const Interruption& endingSignals,
         std::pair<Descriptor, Descriptor> sockets);

  template <typename Answer>
  Answer ask(const std::string& request, std::chrono::milliseconds patience);
  /// Waits until the socket is readable; whether that was in time.
  bool waitForAnswer(std::chrono::milliseconds patience);

  std::size_t side;
  const Interruption& interruption;
  Descriptor socket;
  ChildProcess process;
};

}  // namespace survey
