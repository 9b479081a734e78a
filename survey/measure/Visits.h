/// The frames of one visit: some to warm up, some that count, and again where others took the
/// processor away.
#pragma once

#include <array>
#include <chrono>
#include <vector>

#include "survey/measure/WorkerProcess.h"

namespace survey {

/// Whether the submitting thread waited for its processor, or the hypervisor took that away, for
/// more than a small share of the frame.
bool isDisturbed(const Frame& frame);

/// Whether a cell has not cost too many workers yet, and has a figure as far as is known.
bool isWorthAnotherVisit(const CellRecord& cell);

/// Of the cell that the worker has set; `frame` is the least measured time of one in milliseconds.
/// Four undisturbed frames, or as many as fit into that time where the cell's own frames are
/// longer, two at least; among twice as many at most, the disturbed ones with them.
std::vector<Frame> framesOf(WorkerProcess& worker, double frame,
                            std::chrono::milliseconds patience);

/// Of two workers that draw in turn, one frame each: of either the frames, of which those at the
/// same place belong together. Twelve undisturbed pairs, with the same limits. Who begins changes
/// with every pair; in the first one it is the first. `asked` is which of them was asked last, for
/// who catches a WorkerFault.
using FramesInTurns = std::array<std::vector<Frame>, 2>;
FramesInTurns framesInTurns(const std::array<WorkerProcess*, 2>& workers, double frame,
                            std::chrono::milliseconds patience, std::size_t& asked);

}  // namespace survey
