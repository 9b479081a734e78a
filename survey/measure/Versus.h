/// Two sides whose workers draw in turns.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "survey/measure/Survey.h"
#include "survey/record/Comparison.h"

namespace survey {

/// What the sides are called and how their workers are started.
struct Contestant {
  std::string name;
  Launch launch;
};

/// Lets workers of both sides live at once and draw every cell in turns, frame by frame, on one
/// core, in blocks that start both afresh. Cells that are decided are left out after a while, so
/// that the others get more; it ends when all are, the time is up or a signal comes. A side whose
/// workers do not come up ends it at once, with Ending::kNoWorker and the reason in its record.
/// Throws CannotSurvey where that is the base side's first one.
Comparison takeVersus(const std::vector<Cell>& cells, const Settings& settings, double threshold,
                      const Contestant& base, const Contestant& newer,
                      const std::function<void(const Progress&)>& tell);

}  // namespace survey
