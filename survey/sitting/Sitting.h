/// A sitting: the sides' workers draw every cell in turns, on one core, in blocks that start all of
/// them afresh.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/sitting/Interruption.h"

namespace survey {

/// No worker of the first side could be started; the text is the reason.
class CannotBegin : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// How far it is, told after every visit.
struct Progress {
  double part;         ///< of the time, 0 to 1
  double secondsLeft;  ///< at most
  std::string cell;    ///< visited just now
  /// How often each cell can be drawn in the whole time, as far as is known yet; 0: not known.
  double visits;
};

/// What need not be drawn any more, by side and cell. The first of several sides is drawn as long
/// as one of the others is.
using Settled = std::vector<std::vector<bool>>;

/// Who takes part otherwise.
struct Onlookers {
  std::function<Settled(const Record&)> settled;  ///< asked between blocks
  std::function<void(const Progress&)> tell;
  /// Asked when all else is over: the cells of which it shall be found out where their time goes.
  /// Empty where nobody wants to know; else a quarter of the time is kept for it.
  std::function<std::vector<std::size_t>(const Record&)> explain{};
};

/// Takes the sitting that the record plans with its settings, its cells and its sides' names and
/// environments, and fills in all that it saw. `command` is what every worker is.
///
/// It ends when everything is settled, the time is up or a signal comes through `interruption`, and
/// when the first side, or all others, can start no further worker. A cell that has made two
/// workers of a side fail is not drawn by that side again. Throws CannotBegin.
void takeSitting(Record& record, const std::vector<std::string>& command,
                 const Interruption& interruption, const Onlookers& onlookers);

}  // namespace survey
