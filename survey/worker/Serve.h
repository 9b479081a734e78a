/// A worker's side of the line: requests in, answers out, until the controller closes it.
#pragma once

#include <chrono>
#include <stdexcept>

#include "survey/protocol/Channel.h"
#include "survey/protocol/Messages.h"

namespace survey {

/// What a worker works on. A member that throws std::exception fails with its text as the sentence;
/// the controller then has no more use for the worker.
class Subject {
 public:
  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;
  virtual ~Subject() = default;

  virtual Driver begin(const Begin& begin) = 0;
  virtual CellAnswer set(const Cell& cell) = 0;
  virtual Frame draw(std::chrono::microseconds leastTime) = 0;
};

/// Returns when the other end is closed.
void serve(const Channel& channel, Subject& subject);

}  // namespace survey
