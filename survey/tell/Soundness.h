/// Whether a result that was read can be one that was written.
#pragma once

#include "survey/data/Record.h"

namespace survey {

/// Throws std::runtime_error, with the place, for what no sitting can have seen: "sitting 1: visit
/// 3 names cell 7 of 2". What passes can be judged and shown.
void requireSound(const Result& result);

}  // namespace survey
