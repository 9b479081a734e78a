#include "survey/judge/Evidence.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "survey/judge/Blocks.h"
#include "survey/statistics/Averages.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {
namespace {

/// Whether one side gave up what the other one did not: blocks from before that are no ratio.
bool isGivenUpByOne(const CellState& base, const CellState& newer) {
  return base.isGivenUp() != newer.isGivenUp();
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
    std::vector<double> means;
    for (const Estimate& estimate : evidence.estimates) {
      means.push_back(estimate.mean);
    }
    evidence.overall = Estimate{mean(means), {std::numeric_limits<double>::infinity(), 0}};
  }
}

Evidence evidenceInTurns(const SideView& base, const SideView& newer) {
  const CellsBlocks ratios = blockRatiosOf(newer);
  Evidence evidence;
  std::vector<std::vector<double>> values;
  for (std::size_t cell = 0; cell < ratios.size(); ++cell) {
    if (ratios[cell].empty() || isGivenUpByOne(base.state(cell), newer.state(cell))) {
      continue;
    }
    evidence.cells.push_back({cell, cell, ratios[cell].size()});
    values.emplace_back();
    for (const BlockValue& ratio : ratios[cell]) {
      values.back().push_back(ratio.value);
    }
    evidence.estimates.push_back(estimateOf(values.back()));
  }
  findOverall(evidence, [&](const std::vector<std::size_t>& chosen) -> Estimate {
    JointMean joint;
    for (const std::size_t i : chosen) {
      std::vector<std::size_t> blocks;
      for (const BlockValue& ratio : ratios[evidence.cells[i].base]) {
        blocks.push_back(ratio.block);
      }
      joint.add(trimmedMean(values[i]), blocks);
    }
    return {joint.mean(), {joint.variance(), joint.freedom()}};
  });
  shareVariances(evidence.estimates);
  return evidence;
}

double meanLogarithm(std::vector<double> values) {
  for (double& value : values) {
    value = std::log(value);
  }
  return mean(values);
}

/// How far the cores' speed lies apart on average, as levels are averaged over blocks for rates: a
/// logarithm, 0 where it is not known.
double moveBetween(const Record& base, const Record& newer) {
  if (base.speeds.empty() || newer.speeds.empty()) {
    return 0;
  }
  return std::abs(meanLogarithm(newer.speeds) - meanLogarithm(base.speeds));
}

std::vector<Estimate> estimatesOf(const std::vector<Jackknife>& figures) {
  std::vector<Estimate> estimates;
  estimates.reserve(figures.size());
  for (const Jackknife& figure : figures) {
    estimates.push_back(estimateOf(figure));
  }
  return estimates;
}

std::vector<Estimate> differences(const std::vector<Estimate>& newer,
                                  const std::vector<Estimate>& base) {
  std::vector<Estimate> estimates;
  std::transform(newer.begin(), newer.end(), base.begin(), std::back_inserter(estimates),
                 difference);
  return estimates;
}

std::vector<Jackknife> these(const std::vector<Jackknife>& figures,
                             const std::vector<std::size_t>& chosen) {
  std::vector<Jackknife> some;
  some.reserve(chosen.size());
  for (const std::size_t i : chosen) {
    some.push_back(figures[i]);
  }
  return some;
}

Evidence evidenceOfTwoSittings(const SideView& base, const SideView& newer) {
  const BlockFits baseFits = blockFitsOf(base);
  const BlockFits newFits = blockFitsOf(newer);
  Evidence evidence;
  std::vector<Jackknife> ofBase;
  std::vector<Jackknife> ofNew;
  for (std::size_t cell = 0; cell < base.record->cells.size(); ++cell) {
    const auto same = indexOf(base.cell(cell), *newer.record);
    if (!same || isGivenUpByOne(base.state(cell), newer.state(*same))) {
      continue;
    }
    const std::size_t blocks =
        std::min(baseFits.all.values[cell].size(), newFits.all.values[*same].size());
    if (blocks > 0) {
      ofBase.push_back(rateOf(baseFits, cell));
      ofNew.push_back(rateOf(newFits, *same));
      evidence.cells.push_back({cell, *same, blocks});
    }
  }
  std::vector<Estimate> before = estimatesOf(ofBase);
  std::vector<Estimate> after = estimatesOf(ofNew);
  evidence.estimates = differences(after, before);
  findOverall(evidence, [&](const std::vector<std::size_t>& chosen) {
    return difference(meanOf(these(ofNew, chosen)), meanOf(these(ofBase, chosen)));
  });
  shareVariances(before);
  shareVariances(after);
  evidence.estimates = differences(after, before);
  evidence.widening = moveBetween(*base.record, *newer.record);
  return evidence;
}

}  // namespace

std::optional<std::size_t> indexOf(const Cell& cell, const Record& record) {
  const auto place = std::find(record.cells.begin(), record.cells.end(), cell);
  return place == record.cells.end()
             ? std::nullopt
             : std::optional(static_cast<std::size_t>(place - record.cells.begin()));
}

Evidence evidenceOf(const SideView& base, const SideView& newer) {
  return base.record == newer.record ? evidenceInTurns(base, newer)
                                     : evidenceOfTwoSittings(base, newer);
}

}  // namespace survey
