#include "survey/judge/Figures.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <set>
#include <sstream>
#include <tuple>

#include "survey/judge/Ranking.h"
#include "survey/statistics/Averages.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

/// On a software renderer timer queries count times of the processor.
std::optional<double> gpuShareOf(const SideView& side, std::size_t cell) {
  std::vector<double> shares;
  if (side.side().driver.software) {
    return std::nullopt;
  }
  for (const Visit& visit : side.record->visits) {
    for (const Frame& frame : side.frames(visit)) {
      if (visit.cell == cell && frame.gpu) {
        shares.push_back(static_cast<double>(*frame.gpu) / static_cast<double>(frame.time()));
      }
    }
  }
  return shares.empty() ? std::nullopt : std::optional(median(std::move(shares)));
}

bool isPrecise(const Interval& interval, double percent) {
  return 100 * interval.halfWidth() <= percent * interval.middle;
}

using Members = std::vector<CellFigure*>;  ///< of all groups

/// What `valuesOf` gives of each, as intervals that lend each other certainty.
std::vector<Interval> intervalsOf(const Members& members, const CellsBlocks& blocks) {
  std::vector<Estimate> estimates;
  for (const CellFigure* const figure : members) {
    estimates.push_back(estimateOf(valuesOf(blocks[figure->cell])));
  }
  shareVariances(estimates);
  std::vector<Interval> intervals;
  std::transform(estimates.begin(), estimates.end(), std::back_inserter(intervals),
                 [](const Estimate& estimate) { return exponential(intervalOf(estimate)); });
  return intervals;
}

/// Fills in the rates, and what is said beside them.
void findRates(const SideView& side, const Members& members, const BlockRates& rates,
               const CellsBlocks& slow) {
  const std::vector<Interval> all = intervalsOf(members, rates.all);
  const std::vector<Interval> typical = intervalsOf(members, rates.typical);
  for (std::size_t i = 0; i < members.size(); ++i) {
    CellFigure& figure = *members[i];
    figure.rate = all[i];
    figure.typical = typical[i];
    if (!figure.rate.meets(figure.typical)) {
      figure.stalls = stallsOf(side, figure.cell);
    }
    if (!slow[figure.cell].empty()) {
      figure.slowFactor = exponential(intervalOf(difference(
          estimateOf(valuesOf(slow[figure.cell])), estimateOf(valuesOf(rates.all[figure.cell])))));
    }
  }
}

/// Fills in the ratios and who leads, and ranks.
void rank(std::vector<Group>& groups, const CellsBlocks& rates, double precision) {
  std::vector<CellsBlocks> values;
  for (const Group& group : groups) {
    CellsBlocks& ofGroup = values.emplace_back();
    for (const CellFigure& figure : group.ranking) {
      ofGroup.push_back(rates[figure.cell]);
    }
  }
  const auto rankings = rankingsOf(values);
  for (std::size_t i = 0; i < groups.size(); ++i) {
    std::vector<CellFigure> ranking;
    for (const auto& [member, ratio, leads] : rankings[i]) {
      CellFigure& figure = ranking.emplace_back(groups[i].ranking[member]);
      figure.ratio = ratio;
      figure.leads = leads;
      figure.precise = isPrecise(rankings[i].size() == 1 ? figure.rate : ratio, precision);
    }
    groups[i].ranking = std::move(ranking);
  }
}

std::set<std::string> wordsIn(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

/// The cell that differs from this one by the fewest attributes that it lacks.
const CellFigure* besideOf(const SideView& side, const CellFigure& figure, const Members& members) {
  const auto sentBy = [&](const CellFigure& of) {
    return wordsIn(side.state(of.cell).answer->sent);
  };
  const Cell& own = side.cell(figure.cell);
  const std::set<std::string> ownWords = sentBy(figure);
  const CellFigure* beside = nullptr;
  for (const CellFigure* const other : members) {
    const Cell& cell = side.cell(other->cell);
    const std::set<std::string> words = sentBy(*other);
    if (cell.method == own.method && cell.primitive == own.primitive && cell.detail == own.detail &&
        words.size() < ownWords.size() &&
        std::includes(ownWords.begin(), ownWords.end(), words.begin(), words.end()) &&
        (beside == nullptr || words.size() > sentBy(*beside).size())) {
      beside = other;
    }
  }
  return beside;
}

std::vector<AttributeCost> costsOf(const SideView& side, const Members& members,
                                   const CellsBlocks& rates) {
  std::vector<AttributeCost> costs;
  std::vector<Estimate> estimates;  // of the logarithm of the time
  std::vector<double> nanoseconds;  // a vertex takes beside
  for (const CellFigure* const figure : members) {
    if (const CellFigure* const beside = besideOf(side, *figure, members)) {
      const CellAnswer& answer = *side.state(beside->cell).answer;
      costs.push_back({figure->cell, beside->cell, {}, {}});
      estimates.push_back(ratioOf(rates[beside->cell], rates[figure->cell]));
      nanoseconds.push_back(kNanosecondsPerSecond * static_cast<double>(answer.primitivesPerModel) /
                            (beside->rate.middle * answer.verticesPerCall * answer.callsPerModel));
    }
  }
  shareVariances(estimates);
  for (std::size_t i = 0; i < costs.size(); ++i) {
    costs[i].times = exponential(intervalOf(estimates[i]));
    const auto more = [&](double times) { return nanoseconds[i] * (times - 1); };
    costs[i].perVertex = {more(costs[i].times.low), more(costs[i].times.middle),
                          more(costs[i].times.high)};
  }
  return costs;
}

/// Of each cell, how many visits count.
std::vector<std::size_t> visitsOf(const SideView& side, const std::vector<bool>& counts) {
  std::vector<std::size_t> visits(side.record->cells.size());
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const Visit& visit = side.record->visits[i];
    visits[visit.cell] += counts[i] && !side.frames(visit).empty() ? 1 : 0;
  }
  return visits;
}

}  // namespace

Figures figuresOf(const SideView& side) {
  const Record& record = *side.record;
  Figures figures;
  figures.states = statesOf(record);
  const States& states = figures.states;
  const std::vector<bool> counts = states.visitsIn(states.shown);
  const BlockRates rates = blockRatesOf(side, counts);
  const std::vector<std::size_t> visits = visitsOf(side, counts);

  // In the order of the cells, which is that of their details.
  std::vector<std::tuple<std::string, unsigned int, std::string>> keys;
  for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
    const Cell& plan = record.cells[cell];
    const auto& [answer, faults] = side.state(cell);
    const std::tuple key(plan.primitive, plan.detail, answer ? answer->sent : plan.with);
    const auto place = std::find(keys.begin(), keys.end(), key);
    const auto index = static_cast<std::size_t>(place - keys.begin());
    if (place == keys.end()) {
      keys.push_back(key);
      figures.groups.push_back({plan.primitive, plan.detail, std::get<2>(key), {}, {}});
    }
    Group& group = figures.groups[index];
    figures.failed += faults.empty() ? 0 : 1;
    if (answer && !answer->hasFigure()) {
      ++figures.refused;
    }
    if (rates.all[cell].empty()) {
      group.without.push_back(cell);
      figures.unreached += side.state(cell).isBad() ? 0 : 1;
      continue;
    }
    group.ranking.push_back({.cell = cell,
                             .blocks = rates.all[cell].size(),
                             .visits = visits[cell],
                             .gpuShare = gpuShareOf(side, cell)});
  }
  Members members;
  for (Group& group : figures.groups) {
    for (CellFigure& figure : group.ranking) {
      members.push_back(&figure);
    }
  }
  const bool showsFast = states.areTwo && states.shown == CoreState::kFast;
  findRates(side, members, rates,
            showsFast ? blockRatesOf(side, states.visitsIn(CoreState::kSlow)).all
                      : CellsBlocks(record.cells.size()));
  figures.costs = costsOf(side, members, rates.all);
  rank(figures.groups, rates.all, record.settings.precision);
  for (Group& group : figures.groups) {
    for (CellFigure& figure : group.ranking) {
      const CellAnswer& answer = *side.state(figure.cell).answer;
      figure.nanosecondsPerCall = kNanosecondsPerSecond *
                                  static_cast<double>(answer.primitivesPerModel) /
                                  (figure.rate.middle * answer.callsPerModel);
    }
    figures.imprecise += static_cast<std::size_t>(
        std::count_if(group.ranking.begin(), group.ranking.end(),
                      [](const CellFigure& figure) { return !figure.precise; }));
  }
  return figures;
}

std::vector<bool> cellsAhead(const SideView& side, const Figures& figures) {
  constexpr std::size_t kMostAhead = 4;
  const std::size_t cells = side.record->cells.size();
  std::vector<std::size_t> all(cells, 0);
  for (const Visit& visit : side.record->visits) {
    ++all[visit.cell];
  }
  std::vector<std::size_t> counting(cells, 0);
  std::size_t fewest = std::numeric_limits<std::size_t>::max();
  for (const Group& group : figures.groups) {
    for (const CellFigure& figure : group.ranking) {
      counting[figure.cell] = figure.visits;
      // Where even twice the visits did not help, others are not to wait.
      const bool hopes = all[figure.cell] <= 2 * side.record->visits.size() / cells;
      fewest =
          hopes && !side.state(figure.cell).isGivenUp() ? std::min(fewest, figure.visits) : fewest;
    }
  }
  std::vector<bool> ahead;
  std::transform(counting.begin(), counting.end(), std::back_inserter(ahead), [&](std::size_t own) {
    return figures.states.areTwo && own > fewest && own - fewest > kMostAhead;
  });
  return ahead;
}

}  // namespace survey
