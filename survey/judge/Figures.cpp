#include "survey/judge/Figures.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "survey/judge/Blocks.h"
#include "survey/statistics/Averages.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

Interval exponential(const Interval& logarithms) {
  return {std::exp(logarithms.low), std::exp(logarithms.middle), std::exp(logarithms.high)};
}

/// Block by block, where both were measured.
std::vector<double> differences(const std::vector<BlockValue>& blocks,
                                const std::vector<BlockValue>& best) {
  std::vector<double> values;
  for (const BlockValue& block : blocks) {
    const auto same = std::find_if(best.begin(), best.end(),
                                   [&](const auto& b) { return b.block == block.block; });
    if (same != best.end()) {
      values.push_back(block.value - same->value);
    }
  }
  return values;
}

Estimate ratioOf(const BlockFits& fits, std::size_t cell, std::size_t best) {
  const CellsBlocks& values = fits.all.values;
  if (differences(values[cell], values[best]).empty()) {
    // Never in one block: the machine's speed is all that joins them.
    return {values[cell].front().value - values[best].front().value};
  }
  return estimateOf(fits.jackknife(
      [=](const BlockFit& fit) { return differences(fit.values[cell], fit.values[best]); }));
}

/// On a software renderer timer queries count times of the processor.
std::optional<double> gpuShareOf(const SideView& side, std::size_t cell) {
  std::vector<double> shares;
  if (side.side().driver.software) {
    return std::nullopt;
  }
  for (const Visit& visit : side.record->visits) {
    for (const Frame& frame : side.frames(visit)) {
      if (visit.cell == cell && frame.gpu) {
        shares.push_back(static_cast<double>(*frame.gpu) / static_cast<double>(frame.wall));
      }
    }
  }
  return shares.empty() ? std::nullopt : std::optional(median(std::move(shares)));
}

bool isPrecise(const Interval& interval, double percent) {
  return 100 * interval.halfWidth() <= percent * interval.middle;
}

/// Fills in the rates.
void findRates(std::vector<Group>& groups, const BlockFits& fits) {
  std::vector<Estimate> estimates;
  for (const Group& group : groups) {
    for (const CellFigure& figure : group.ranking) {
      estimates.push_back(estimateOf(rateOf(fits, figure.cell)));
    }
  }
  shareVariances(estimates);
  auto estimate = estimates.begin();
  for (Group& group : groups) {
    for (CellFigure& figure : group.ranking) {
      figure.rate = exponential(intervalOf(*estimate++));
    }
  }
}

/// Ranks the groups, whose figures have rates, and fills in the ratios.
void rank(std::vector<Group>& groups, const BlockFits& fits, double precision) {
  std::vector<Estimate> estimates;
  for (Group& group : groups) {
    std::vector<CellFigure>& ranking = group.ranking;
    std::stable_sort(ranking.begin(), ranking.end(), [](const CellFigure& a, const CellFigure& b) {
      return a.rate.middle > b.rate.middle;
    });
    for (std::size_t i = 1; i < ranking.size(); ++i) {
      estimates.push_back(ratioOf(fits, ranking[i].cell, ranking[0].cell));
    }
  }
  shareVariances(estimates);
  auto estimate = estimates.begin();
  for (Group& group : groups) {
    for (CellFigure& figure : group.ranking) {
      const bool best = &figure == &group.ranking.front();
      figure.ratio = best ? Interval{1, 1, 1} : exponential(intervalOf(*estimate++));
      figure.leads = figure.ratio.high >= 1;
      figure.precise = isPrecise(group.ranking.size() == 1 ? figure.rate : figure.ratio, precision);
    }
  }
}

}  // namespace

Figures figuresOf(const SideView& side) {
  const Record& record = *side.record;
  const BlockFits fits = blockFitsOf(side);
  const CellsBlocks& values = fits.all.values;
  Figures figures;
  figures.slowest = fits.all.slowest;

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
    if (values[cell].empty()) {
      group.without.push_back(cell);
      figures.unreached += side.state(cell).isBad() ? 0 : 1;
      continue;
    }
    group.ranking.push_back(
        {.cell = cell, .blocks = values[cell].size(), .gpuShare = gpuShareOf(side, cell)});
  }
  findRates(figures.groups, fits);
  rank(figures.groups, fits, record.settings.precision);
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

}  // namespace survey
