/// The process's objects. All live until the process ends.
#pragma once

#include "app/View.h"
#include "engine/SorvantaTest.h"
#include "perf/PerformanceHistory.h"

extern View* view;
extern SorvantaTest* vpt;
extern PerformanceHistory* perfHistory;
