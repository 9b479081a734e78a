/// A machine whose truth is known, for what is said about it to be held against.
#pragma once

#include <cstddef>
#include <optional>
#include <random>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

struct Simulation {
  double dwell;            ///< seconds that the core stays in one state on average
  std::size_t cells = 30;  ///< one group
  std::size_t blocks = 10;
  std::size_t passes = 1;  ///< over all cells in a block
  double slow = 0.55;      ///< the yardstick's slow speed to its fast one
  double luck = 0.02;      ///< of a process with a cell: standard deviation of the logarithm
  double scatter = 0.015;  ///< of a frame
  double astray = 0.03;    ///< share of the blocks' cells that are off by 10 to 40 %
  std::size_t brief = 0;   ///< in turns: cells that end early, one after a block, one after two...
  double sitting = 0;      ///< by which sittings differ for no known reason: a deviation, too
  // In turns:
  double bimodal = 0;      ///< share of the processes that are half as fast again
  double stalls = 0;       ///< share of the frames that take 20 ms more
  double correlation = 0;  ///< of the processes' luck from block to block
};

struct SimulatedSurvey {
  Record record;
  /// The truth, by cell: primitives per second in the fast state, and the slow state's part of it.
  std::vector<double> rates;
  std::vector<double> slowFactors;
};

/// The state jumps at random moments, also within frames, and slows each cell by a factor of its
/// own. A third of the cells has long frames.
SimulatedSurvey simulate(const Simulation& machine, std::mt19937_64& random);

/// A further sitting of the same cells on the same machine, where the driver's rates are those
/// times `factor`.
Record simulateAgain(const SimulatedSurvey& survey, const Simulation& machine, double factor,
                     std::mt19937_64& random);

/// Sides in turns there, a base and new ones that are faster by those parts (-0.03: slower by 3 %).
Record simulateTurns(const Simulation& machine, const std::vector<double>& effects,
                     std::mt19937_64& random);

/// Makes the frames of a side longer by that factor, in all cells or one.
void stretch(Record& record, std::size_t side, double factor,
             std::optional<std::size_t> cell = std::nullopt);

}  // namespace survey
