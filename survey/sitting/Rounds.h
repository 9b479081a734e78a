/// The frames of one visit: some to warm up, some that count, and again where others took the
/// processor away.
#pragma once

#include <chrono>
#include <vector>

#include "survey/sitting/Worker.h"

namespace survey {

/// Whether the submitting thread waited for its processor, or the hypervisor took that away, for
/// more than a small share of the frame.
bool isDisturbed(const Frame& frame);

/// Of workers that have set the same cell and draw in turns, a frame each: of each its frames, of
/// which those at the same place belong to one round. `frame` is the least measured time of one in
/// milliseconds.
///
/// Undisturbed rounds, four of one worker and twelve of several, or as many as fit into their time
/// where the cell's own frames are longer, two at least; among twice as many at most, the disturbed
/// ones with them. Who begins changes with every round; in the first one it is the first.
std::vector<std::vector<Frame>> framesInTurns(const std::vector<Worker*>& workers, double frame,
                                              std::chrono::milliseconds patience);

}  // namespace survey
