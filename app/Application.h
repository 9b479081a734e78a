/// The process's two objects. Both live until the process ends.
#pragma once

#include "engine/SorvantaTest.h"
#include "perf/PerformanceHistory.h"

extern SorvantaTest* vpt;
extern PerformanceHistory* perfHistory;
