/// Where a sitting takes place: the time it has, the core that is drawn on, and how workers come up
/// there.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>

#include "survey/measure/Interruption.h"
#include "survey/measure/WorkerProcess.h"
#include "survey/plan/Turns.h"
#include "survey/record/Record.h"

namespace survey {

/// No worker came up at all; the text is the reason.
class CannotSurvey : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Station {
 public:
  explicit Station(const Settings& settings);

  double elapsed() const;  ///< seconds
  double secondsLeft() const;
  bool timeIsUp() const { return secondsLeft() <= 0; }
  Turns& turns() { return turns_; }

  /// A worker with its context, no two with the same heap or stack; the record's driver is what it
  /// found. After some that do not come up, throws the last one's WorkerFault.
  std::unique_ptr<WorkerProcess> start(const Launch& launch, Record& record);
  std::size_t started() const { return started_; }  ///< workers that came up
  /// What a worker may take for one answer: larger models take longer to build and to draw.
  std::chrono::milliseconds patienceFor(unsigned int detail) const;

  /// Notes how fast the core is by a calculation that is always the same.
  void noteSpeed(Record& record) const;

 private:
  Settings settings_;
  Turns turns_;
  Interruption interruption_;
  std::optional<unsigned int> core_;
  std::size_t started_ = 0;
  std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

}  // namespace survey
