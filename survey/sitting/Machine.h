/// What the machine says of itself, under /proc and /sys. What it does not say stays empty.
#pragma once

#include "survey/data/Record.h"

namespace survey {

Machine thisMachine();
MachineState machineNow();

}  // namespace survey
