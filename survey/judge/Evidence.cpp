#include "survey/judge/Evidence.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <iterator>
#include <limits>

#include "survey/judge/Blocks.h"
#include "survey/judge/States.h"
#include "survey/statistics/Averages.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {
namespace {

/// Whether one side gave up what the other one did not: blocks from before that are no ratio.
bool isGivenUpByOne(const CellState& base, const CellState& newer) {
  return base.isGivenUp() != newer.isGivenUp();
}

std::vector<double> meansOf(const std::vector<Estimate>& estimates) {
  std::vector<double> means;
  std::transform(estimates.begin(), estimates.end(), std::back_inserter(means),
                 [](const Estimate& estimate) { return estimate.mean; });
  return means;
}

/// Finds the mean over the cells that tell how far they scatter. Where none does, neither does it.
template <typename MeanOf>
void findOverall(Evidence& evidence, const MeanOf& meanOf) {
  std::vector<std::size_t> chosen;
  for (std::size_t i = 0; i < evidence.cells.size(); ++i) {
    if (evidence.estimates[i].variance.freedom > 0) {
      chosen.push_back(i);
    } else {
      evidence.notInOverall.push_back(evidence.cells[i].base);
    }
  }
  if (!chosen.empty()) {
    evidence.overall = meanOf(chosen);
  } else if (!evidence.cells.empty()) {
    evidence.notInOverall.clear();
    evidence.overall =
        Estimate{mean(meansOf(evidence.estimates)), {std::numeric_limits<double>::infinity(), 0}};
  }
}

/// The visits whose pairs count: a jump of the core's speed between the frames of a pair is no
/// change of the driver, but where it never stays for long, all count.
std::vector<bool> visitsInTurns(const Record& record) {
  const States states = statesOf(record);
  std::vector<bool> counts;
  std::transform(states.ofVisits.begin(), states.ofVisits.end(), std::back_inserter(counts),
                 [](const auto& state) { return state.has_value(); });
  return std::count(counts.begin(), counts.end(), true) < std::ssize(counts) / 2
             ? std::vector<bool>(counts.size(), true)
             : counts;
}

Evidence evidenceInTurns(const SideView& base, const SideView& newer) {
  const BlockRates ratios = blockRatiosOf(newer, visitsInTurns(*newer.record));
  Evidence evidence;
  std::vector<std::vector<double>> values;
  for (std::size_t cell = 0; cell < ratios.all.size(); ++cell) {
    if (ratios.all[cell].empty() || isGivenUpByOne(base.state(cell), newer.state(cell))) {
      continue;
    }
    evidence.cells.push_back({cell, cell, ratios.all[cell].size()});
    values.push_back(valuesOf(ratios.all[cell]));
    evidence.estimates.push_back(estimateOf(values.back()));
    evidence.typical.push_back(estimateOf(valuesOf(ratios.typical[cell])));
  }
  findOverall(evidence, [&](const std::vector<std::size_t>& chosen) -> Estimate {
    JointMean joint;
    for (const std::size_t i : chosen) {
      std::vector<std::size_t> blocks;
      for (const BlockValue& ratio : ratios.all[evidence.cells[i].base]) {
        blocks.push_back(ratio.block);
      }
      joint.add(trimmedMean(values[i]), blocks);
    }
    return {joint.mean(), {joint.variance(), joint.freedom()}};
  });
  shareVariances(evidence.estimates);
  shareVariances(evidence.typical);
  return evidence;
}

/// What each sitting of a side says of its cells, by the cells of the first one: logarithms of
/// rates, nothing where it has none.
using Levels = std::vector<std::vector<std::optional<Estimate>>>;  // by cell and sitting

Levels levelsOf(const Measured& side, const std::vector<States>& states, CoreState state) {
  Levels levels(side.front().record->cells.size());
  for (std::size_t i = 0; i < side.size(); ++i) {
    const SideView& sitting = side[i];
    const BlockRates rates =
        blockRatesOf(sitting, states[i].visitsIn(states[i].areTwo ? state : CoreState::kFast));
    for (std::size_t cell = 0; cell < levels.size(); ++cell) {
      const auto same = indexOf(side.front().cell(cell), *sitting.record);
      const bool isThere = same && !rates.all[*same].empty() && !sitting.state(*same).isGivenUp();
      levels[cell].push_back(isThere ? std::optional(estimateOf(valuesOf(rates.all[*same])))
                                     : std::nullopt);
    }
  }
  return levels;
}

/// How many sittings of the side that has fewer were in that state for long enough.
std::ptrdiff_t sittingsIn(CoreState state, const std::vector<States>& base,
                          const std::vector<States>& newer) {
  const auto count = [=](const std::vector<States>& side) {
    return std::count_if(side.begin(), side.end(), [=](const States& states) {
      return !states.areTwo || states.shown == state;
    });
  };
  return std::min(count(base), count(newer));
}

/// Whether each sitting of the one side has its neighbour in time on the other.
bool tookTurns(const Measured& base, const Measured& newer) {
  if (base.size() != newer.size()) {
    return false;
  }
  double latest = 0;
  for (std::size_t i = 0; i < base.size(); ++i) {
    const double one = beginOf(base[i]);
    const double other = beginOf(newer[i]);
    if (std::min(one, other) <= latest) {
      return false;
    }
    latest = std::max(one, other);
  }
  return true;
}

std::vector<Estimate> known(const std::vector<std::optional<Estimate>>& levels) {
  std::vector<Estimate> estimates;
  for (const std::optional<Estimate>& level : levels) {
    if (level) {
      estimates.push_back(*level);
    }
  }
  return estimates;
}

bool isWhole(const std::vector<std::optional<Estimate>>& levels) {
  return std::all_of(levels.begin(), levels.end(), [](const auto& level) { return level; });
}

/// New to base, with the sitting, or the pair of them, as the unit.
Estimate changeOf(const std::vector<double>& base, const std::vector<double>& newer, bool inPairs) {
  if (!inPairs || base.size() != newer.size()) {
    return difference(estimateOf(newer), estimateOf(base));
  }
  std::vector<double> pairs;
  std::transform(newer.begin(), newer.end(), base.begin(), std::back_inserter(pairs),
                 std::minus<>());
  return estimateOf(pairs);
}

Evidence evidenceOfSittings(const Measured& base, const Measured& newer) {
  /// More than steady cells of one driver were seen to differ by between sittings of one machine.
  constexpr double kAllowance = 0.1;
  std::vector<const Record*> sittings;
  for (const Measured* const side : {&base, &newer}) {
    std::transform(side->begin(), side->end(), std::back_inserter(sittings),
                   [](const SideView& sitting) { return sitting.record; });
  }
  const std::vector<States> states = statesOf(sittings);
  const std::vector<States> ofBoth[] = {{states.begin(), states.begin() + std::ssize(base)},
                                        {states.begin() + std::ssize(base), states.end()}};
  const auto fast = sittingsIn(CoreState::kFast, ofBoth[0], ofBoth[1]);
  const auto slow = sittingsIn(CoreState::kSlow, ofBoth[0], ofBoth[1]);
  const CoreState state = slow > fast ? CoreState::kSlow : CoreState::kFast;
  const Levels ofBase = levelsOf(base, ofBoth[0], state);
  const Levels ofNew = levelsOf(newer, ofBoth[1], state);
  const bool areSingle = base.size() == 1 || newer.size() == 1;
  const bool inPairs = !areSingle && tookTurns(base, newer);
  Evidence evidence;
  evidence.allowance = areSingle ? kAllowance : 0;
  evidence.inUnlikeStates = std::max(fast, slow) == 0;
  std::vector<double> baseSums(base.size());
  std::vector<double> newSums(newer.size());
  double count = 0;
  const auto add = [](std::vector<double>& sums, const std::vector<double>& means) {
    std::transform(sums.begin(), sums.end(), means.begin(), sums.begin(), std::plus<>());
  };
  for (std::size_t cell = 0; cell < ofBase.size(); ++cell) {
    const auto same = indexOf(base.front().cell(cell), *newer.front().record);
    if (!same) {
      continue;
    }
    const auto& before = ofBase[cell];
    const auto& after = ofNew[*same];
    const std::vector<double> baseMeans = meansOf(known(before));
    const std::vector<double> newMeans = meansOf(known(after));
    if (baseMeans.empty() || newMeans.empty()) {
      continue;
    }
    evidence.cells.push_back({cell, *same, std::min(baseMeans.size(), newMeans.size())});
    const bool isIn = isWhole(before) && isWhole(after);
    evidence.estimates.push_back(areSingle ? difference(meanOf(known(after)), meanOf(known(before)))
                                           : changeOf(baseMeans, newMeans, inPairs && isIn));
    if (isIn) {
      add(baseSums, baseMeans);
      add(newSums, newMeans);
      count += 1;
    } else {
      evidence.notInOverall.push_back(cell);
    }
  }
  if (areSingle) {
    shareVariances(evidence.estimates);
    findOverall(evidence, [&](const std::vector<std::size_t>& chosen) {
      std::vector<Estimate> some;
      std::transform(chosen.begin(), chosen.end(), std::back_inserter(some),
                     [&](std::size_t i) { return evidence.estimates[i]; });
      return meanOf(some);
    });
  } else if (count > 0) {
    for (std::vector<double>* const sums : {&baseSums, &newSums}) {
      for (double& sum : *sums) {
        sum /= count;
      }
    }
    evidence.overall = changeOf(baseSums, newSums, inPairs);
  }
  return evidence;
}

}  // namespace

double beginOf(const SideView& sitting) {
  std::tm time{};
  char sign = '+';
  int hours = 0;
  int minutes = 0;
  constexpr int kParts = 9;
  // NOLINTNEXTLINE(cert-err34-c): what does not fit is no time
  if (std::sscanf(sitting.record->before.when.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c%2d:%2d",
                  &time.tm_year, &time.tm_mon, &time.tm_mday, &time.tm_hour, &time.tm_min,
                  &time.tm_sec, &sign, &hours, &minutes) != kParts) {
    return 0;
  }
  constexpr int kFirstYear = 1900;
  constexpr double kMinute = 60;
  time.tm_year -= kFirstYear;
  time.tm_mon -= 1;
  return static_cast<double>(timegm(&time)) -
         (sign == '-' ? -kMinute : kMinute) * (kMinute * hours + minutes);
}

std::optional<std::size_t> indexOf(const Cell& cell, const Record& record) {
  const auto place = std::find(record.cells.begin(), record.cells.end(), cell);
  return place == record.cells.end()
             ? std::nullopt
             : std::optional(static_cast<std::size_t>(place - record.cells.begin()));
}

Evidence evidenceOf(const Measured& base, const Measured& newer) {
  return base.front().record == newer.front().record ? evidenceInTurns(base.front(), newer.front())
                                                     : evidenceOfSittings(base, newer);
}

}  // namespace survey
