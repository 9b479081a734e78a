/// The frames of one visit: some to warm up, some that count, and again where others took too much
/// of the processor away.
#pragma once

#include <chrono>
#include <vector>

#include "survey/sitting/Worker.h"

namespace survey {

/// Whether what was lost to others cannot be taken out of the frame's time: the submitting thread
/// waited for its processor for most of it, so that its caches were somebody else's, or the
/// hypervisor, whose clock is coarse, took more than a small share.
bool isDisturbed(const Frame& frame);

/// Of workers that have set the same cell and draw in turns, a frame each: of each its frames, of
/// which those at the same place belong to one round. `frame` is the least measured time of one in
/// milliseconds.
///
/// Undisturbed rounds, two of one worker and five of several, or as many as fit into their time
/// where the cell's own frames are longer; among twice as many at most, the disturbed ones with
/// them. Who begins changes with every round, in the first one it is the first, and all begin
/// equally often. No frame begins after the deadline; none at all are returned where not all could
/// begin once before it.
std::vector<std::vector<Frame>> framesInTurns(const std::vector<Worker*>& workers, double frame,
                                              std::chrono::milliseconds patience,
                                              std::chrono::steady_clock::time_point deadline);

}  // namespace survey
