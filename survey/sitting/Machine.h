/// What the machine says of itself, under /proc and /sys. What it does not say stays empty.
#pragma once

#include "survey/data/Record.h"

namespace survey {

Machine thisMachine();
MachineState machineNow();

/// How fast that core is at a calculation that is always the same: steps per second.
double speedOf(unsigned int core);

}  // namespace survey
