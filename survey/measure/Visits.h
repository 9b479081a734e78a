/// The frames of one visit: some to warm up, some that count, and again where others took the
/// processor away.
#pragma once

#include <chrono>
#include <vector>

#include "survey/measure/WorkerProcess.h"

namespace survey {

/// Whether the submitting thread waited for its processor, or the hypervisor took that away, for
/// more than a small share of the frame.
bool isDisturbed(const Frame& frame);

/// Of the cell that the worker has set; `frame` is the least measured time of one in milliseconds.
/// Four undisturbed frames, or as many as fit into that time where the cell's own frames are
/// longer, two at least; among twice as many at most, the disturbed ones with them.
std::vector<Frame> framesOf(WorkerProcess& worker, double frame,
                            std::chrono::milliseconds patience);

}  // namespace survey
