#include "survey/judge/States.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "survey/statistics/Levels.h"

namespace survey {
namespace {

/// A logarithm: less would not be worth the visits in between.
constexpr double kLeastStep = 0.1;
constexpr double kSure = 0.95;
/// Of the visits: less is no state, but a moment.
constexpr double kLeastShare = 0.02;

std::optional<CoreState> stateOf(const Visit& visit, const TwoLevels& levels) {
  const auto all = [&](auto&& is) {
    return std::all_of(visit.yardstick.begin(), visit.yardstick.end(),
                       [&](double rate) { return is(levels.probabilityOfHigh(std::log(rate))); });
  };
  return visit.yardstick.empty()                             ? std::nullopt
         : all([](double high) { return high > kSure; })     ? std::optional(CoreState::kFast)
         : all([](double high) { return high < 1 - kSure; }) ? std::optional(CoreState::kSlow)
                                                             : std::nullopt;
}

/// How many cells were drawn in that state in two blocks at least, which is what a figure needs.
std::ptrdiff_t cellsIn(CoreState state, const States& states, const Record& record) {
  std::vector<std::vector<std::size_t>> blocks(record.cells.size());
  for (std::size_t i = 0; i < record.visits.size(); ++i) {
    std::vector<std::size_t>& own = blocks[record.visits[i].cell];
    if (states.ofVisits[i] == state && (own.empty() || own.back() != record.visits[i].block)) {
      own.push_back(record.visits[i].block);
    }
  }
  return std::count_if(blocks.begin(), blocks.end(),
                       [](const auto& own) { return own.size() > 1; });
}

}  // namespace

std::vector<bool> States::visitsIn(CoreState state) const {
  std::vector<bool> visits;
  std::transform(ofVisits.begin(), ofVisits.end(), std::back_inserter(visits),
                 [=](const auto& ofVisit) { return ofVisit == state; });
  return visits;
}

std::vector<States> statesOf(const std::vector<const Record*>& sittings) {
  std::vector<double> readings;
  for (const Record* const record : sittings) {
    for (const Visit& visit : record->visits) {
      std::transform(visit.yardstick.begin(), visit.yardstick.end(), std::back_inserter(readings),
                     [](double rate) { return std::log(rate); });
    }
  }
  std::vector<States> all;
  double visits = 0;
  double fast = 0;
  double slow = 0;
  const std::optional<TwoLevels> levels = twoLevels(readings, kLeastStep);
  for (const Record* const record : sittings) {
    States& states = all.emplace_back();
    std::transform(
        record->visits.begin(), record->visits.end(), std::back_inserter(states.ofVisits),
        [&](const Visit& visit) { return levels ? stateOf(visit, *levels) : CoreState::kFast; });
    const auto count = [&](CoreState state) {
      return static_cast<double>(
          std::count(states.ofVisits.begin(), states.ofVisits.end(), std::optional(state)));
    };
    const double ofFast = count(CoreState::kFast);
    const double ofSlow = count(CoreState::kSlow);
    states.areTwo = true;
    states.fastShare = ofFast + ofSlow > 0 ? ofFast / (ofFast + ofSlow) : 1;
    constexpr double kEnough = 0.8;
    states.shown = static_cast<double>(cellsIn(CoreState::kFast, states, *record)) <
                           kEnough * static_cast<double>(cellsIn(CoreState::kSlow, states, *record))
                       ? CoreState::kSlow
                       : CoreState::kFast;
    visits += static_cast<double>(record->visits.size());
    fast += ofFast;
    slow += ofSlow;
  }
  if (!levels || std::min(fast, slow) < kLeastShare * visits || 2 * (fast + slow) < visits) {
    for (States& states : all) {
      states = {std::vector<std::optional<CoreState>>(states.ofVisits.size(), CoreState::kFast)};
    }
  }
  return all;
}

States statesOf(const Record& record) {
  return statesOf(std::vector{&record}).front();
}

}  // namespace survey
