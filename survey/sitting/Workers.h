/// The workers of a sitting, one a side, and where they draw.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/sitting/Interruption.h"
#include "survey/sitting/Turns.h"
#include "survey/sitting/Worker.h"

namespace survey {

class Workers {
 public:
  /// `command` is what every worker is, `record` what their sides are and where their drivers are
  /// noted; all that is given must outlive this. All draw on one core, where there is a choice.
  Workers(Record& record, const std::vector<std::string>& command, const Interruption& interruption,
          Turns& turns);

  /// Starts one where the side has none, with its context; no two have the same heap or stack. The
  /// side's driver is what it found. After some that fail to start, throws the last one's
  /// WorkerFault.
  void need(std::size_t side);
  void end(std::size_t side) { workers_[side].reset(); }
  void endAll();

  bool has(std::size_t side) const { return workers_[side] != nullptr; }
  Worker& of(std::size_t side) { return *workers_[side]; }
  /// Processes count through the sitting.
  std::size_t numberOf(std::size_t side) const { return numbers_[side]; }

  /// How fast the core is now: primitives per second of a cell that suffers from whoever shares it,
  /// drawn by a worker that nothing else is asked of, which lives as long as the sitting. None
  /// where no core was chosen, and for good where that worker fails.
  std::optional<double> yardstick();

  /// What a worker may take for one answer: larger models take longer to build and to draw.
  std::chrono::milliseconds patienceFor(unsigned int detail) const;

 private:
  std::unique_ptr<Worker> start(std::size_t index);
  bool setYardstick();

  Record& record_;
  const std::vector<std::string>& command_;
  const Interruption& interruption_;
  Turns& turns_;
  std::optional<unsigned int> core_;
  std::vector<std::unique_ptr<Worker>> workers_;
  std::vector<std::size_t> numbers_;
  std::size_t started_ = 0;
  std::unique_ptr<Worker> yardstick_;
  bool hasYardstick_;
};

}  // namespace survey
