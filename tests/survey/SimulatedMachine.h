/// A machine whose truth is known, for what is said about it to be held against.
#pragma once

#include <cstddef>
#include <optional>
#include <random>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

struct Simulation {
  double dwell;            ///< seconds that it stays at one speed on average
  std::size_t cells = 30;  ///< one group
  std::size_t blocks = 10;
  std::size_t passes = 1;  ///< over all cells in a block
  double slow = 0.67;      ///< of the fast speed
  double luck = 0.02;      ///< of a process with a cell: standard deviation of the logarithm
  double scatter = 0.015;  ///< of a frame
  double astray = 0.03;    ///< share of the blocks' cells that are off by 10 to 40 %
  std::size_t brief = 0;   ///< in turns: cells that end early, one after a block, one after two...
};

struct SimulatedSurvey {
  Record record;
  std::vector<double> rates;  ///< the truth: primitives per second at the mean speed of the sitting
};

/// Speeds jump at random moments, also within frames. A third of the cells has long frames.
SimulatedSurvey simulate(const Simulation& machine, std::mt19937_64& random);

/// Sides in turns there, a base and new ones that are faster by those parts (-0.03: slower by 3 %).
Record simulateTurns(const Simulation& machine, const std::vector<double>& effects,
                     std::mt19937_64& random);

/// Makes the frames of a side longer by that factor, in all cells or one.
void stretch(Record& record, std::size_t side, double factor,
             std::optional<std::size_t> cell = std::nullopt);

}  // namespace survey
