/// The taking of a survey: workers, turns and faults.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "survey/measure/Station.h"
#include "survey/record/Record.h"

namespace survey {

/// How far it is, told after every visit.
struct Progress {
  double part;         ///< of the time, 0 to 1
  double secondsLeft;  ///< at most
  std::size_t block;
  std::string cell;  ///< visited just now
};

/// Lets the cells take turns until the ratios are precise, the time is up or a signal comes, in
/// blocks of fresh workers. A cell that costs a second worker is not visited again. Everything but
/// the program in the record is filled in. Throws CannotSurvey.
Record takeSurvey(const std::vector<Cell>& cells, const Settings& settings, const Launch& launch,
                  const std::function<void(const Progress&)>& tell);

}  // namespace survey
