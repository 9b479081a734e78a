#include "survey/figures/Changes.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "survey/figures/Blocks.h"
#include "survey/statistics/Holm.h"
#include "survey/statistics/Quantiles.h"
#include "survey/statistics/StudentsT.h"
#include "survey/statistics/TrimmedMean.h"

namespace survey {
namespace {

constexpr double kPercent = 100;

struct Sureness {
  double falseAlarms;  ///< the chance of one at most, over the whole comparison
  double confidence;   ///< of the intervals
};
constexpr Sureness kInTheEnd{0.05, 0.95};
constexpr Sureness kOnTheWay{0.001, 0.99};

/// Estimates of cells and of the mean over all of them, as they come from one sitting or two.
struct Evidence {
  std::vector<CellChange> cells;
  std::vector<Estimate> estimates;  ///< of the cells, in their order: logarithms of ratios
  std::optional<Estimate> overall;
  double widening = 0;  ///< of every interval, at either end
};

/// The change of an estimate that lies outside the threshold, towards zero at that limit.
double beyond(const Estimate& estimate, double threshold, double widening) {
  const double limit = std::log1p((estimate.mean < 0 ? -threshold : threshold) / kPercent);
  return std::abs(estimate.mean) - std::abs(limit) - widening;
}

/// How probable it is to see so large a change where the true one is the threshold's.
double probabilityWithin(const Estimate& estimate, double threshold, double widening) {
  const double excess = beyond(estimate, threshold, widening);
  return excess <= 0 ? 1
                     : twoSidedProbability(excess / std::sqrt(estimate.variance.value),
                                           estimate.variance.freedom);
}

Change changeFrom(const Estimate& estimate, bool changed, double threshold, double widening,
                  double confidence) {
  const Interval interval = intervalOf(estimate, confidence);
  Change change;
  change.ratio = {std::exp(interval.low - widening), std::exp(interval.middle),
                  std::exp(interval.high + widening)};
  const double part = threshold / kPercent;
  if (changed) {
    change.verdict = estimate.mean < 0 ? Verdict::kSlower : Verdict::kFaster;
  } else if (change.ratio.low >= 1 - part && change.ratio.high <= 1 + part) {
    change.verdict = Verdict::kSame;
  }
  change.mayBeSlower = change.ratio.low < 1 - part && change.verdict != Verdict::kFaster;
  return change;
}

void judge(Evidence& evidence, double threshold, const Sureness& sureness, Change& overall) {
  const bool overallChanged =
      evidence.overall && probabilityWithin(*evidence.overall, threshold, evidence.widening) <=
                              sureness.falseAlarms / 2;
  std::vector<double> probabilities;
  for (const Estimate& estimate : evidence.estimates) {
    probabilities.push_back(probabilityWithin(estimate, threshold, evidence.widening));
  }
  const std::vector<bool> changed =
      positives(probabilities, sureness.falseAlarms / (overallChanged ? 1 : 2));
  for (std::size_t i = 0; i < evidence.cells.size(); ++i) {
    Change& change = evidence.cells[i].change;
    const std::size_t blocks = change.blocks;
    change = changeFrom(evidence.estimates[i], changed[i], threshold, evidence.widening,
                        sureness.confidence);
    change.blocks = blocks;
  }
  if (evidence.overall) {
    overall = changeFrom(*evidence.overall, overallChanged, threshold, evidence.widening,
                         sureness.confidence);
  }
}

/// Of sides in turns.
class Sample {
 public:
  /// A cell's.
  void add(const std::vector<BlockValue>& ratios) {
    std::vector<std::size_t> blocks;
    std::vector<double> values;
    for (const BlockValue& ratio : ratios) {
      blocks.push_back(ratio.block);
      values.push_back(ratio.value);
    }
    estimates.push_back(estimateOf(values));
    joint.add(trimmedMean(values), blocks);
  }
  Estimate overall() const { return {joint.mean(), {joint.variance(), joint.freedom()}}; }

  std::vector<Estimate> estimates;

 private:
  JointMean joint;
};

Evidence evidenceInTurns(const Comparison& comparison) {
  Evidence evidence;
  Sample sample;
  const CellsBlocks ratios = blockRatiosOf(comparison);
  for (std::size_t cell = 0; cell < ratios.size(); ++cell) {
    if (!ratios[cell].empty()) {
      sample.add(ratios[cell]);
      evidence.cells.push_back({cell, cell, {}});
      evidence.cells.back().change.blocks = ratios[cell].size();
    }
  }
  if (!evidence.cells.empty()) {
    evidence.overall = sample.overall();
    shareVariances(sample.estimates);
    evidence.estimates = std::move(sample.estimates);
  }
  return evidence;
}

/// How far the cores' speed lies apart, as a logarithm; 0 where it is not known.
double moveBetween(const Record& base, const Record& newer) {
  if (base.speeds.empty() || newer.speeds.empty()) {
    return 0;
  }
  return std::abs(std::log(median(newer.speeds) / median(base.speeds)));
}

std::optional<std::size_t> indexOf(const Cell& cell, const Record& record) {
  for (std::size_t i = 0; i < record.cells.size(); ++i) {
    if (record.cells[i].cell == cell) {
      return i;
    }
  }
  return std::nullopt;
}

std::vector<Estimate> estimatesOf(const std::vector<Jackknife>& figures) {
  std::vector<Estimate> estimates;
  estimates.reserve(figures.size());
  for (const Jackknife& figure : figures) {
    estimates.push_back(estimateOf(figure));
  }
  return estimates;
}

Evidence evidenceOfTwoSittings(const Comparison& comparison) {
  const BlockFits baseFits = blockFitsOf(comparison.base.record);
  const BlockFits newFits = blockFitsOf(comparison.newer.record);
  const CellsBlocks& base = baseFits.all.values;
  const CellsBlocks& newer = newFits.all.values;
  Evidence evidence;
  std::vector<Jackknife> ofBase;
  std::vector<Jackknife> ofNew;
  for (std::size_t cell = 0; cell < base.size(); ++cell) {
    const auto same = indexOf(comparison.base.record.cells[cell].cell, comparison.newer.record);
    if (same && !base[cell].empty() && !newer[*same].empty()) {
      ofBase.push_back(rateOf(baseFits, cell));
      ofNew.push_back(rateOf(newFits, *same));
      evidence.cells.push_back({cell, *same, {}});
      evidence.cells.back().change.blocks = std::min(base[cell].size(), newer[*same].size());
    }
  }
  if (!evidence.cells.empty()) {
    evidence.overall = difference(meanOf(ofNew), meanOf(ofBase));
    std::vector<Estimate> before = estimatesOf(ofBase);
    std::vector<Estimate> after = estimatesOf(ofNew);
    shareVariances(before);
    shareVariances(after);
    for (std::size_t i = 0; i < before.size(); ++i) {
      evidence.estimates.push_back(difference(after[i], before[i]));
    }
    evidence.widening = moveBetween(comparison.base.record, comparison.newer.record);
  }
  return evidence;
}

Evidence evidenceOf(const Comparison& comparison) {
  return comparison.inTurns ? evidenceInTurns(comparison) : evidenceOfTwoSittings(comparison);
}

/// By how many percent a cell must be slower for that to be found four times of five.
double visibleChange(const Estimate& estimate, double falseAlarms, const Comparison& comparison,
                     double widening) {
  constexpr double kFourOfFive = 0.4;  // two-sided, for a tail of a fifth
  const double freedom = estimate.variance.freedom;
  const double reach = std::sqrt(estimate.variance.value) *
                       (criticalValue(falseAlarms, freedom) + criticalValue(kFourOfFive, freedom));
  const double edge = 1 - comparison.threshold / kPercent;
  return kPercent * (1 - edge * std::exp(-reach - widening));
}

void findFailures(const Comparison& comparison, Changes& changes) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  const auto hasRatio = [&](std::size_t cell) {
    return std::any_of(changes.cells.begin(), changes.cells.end(),
                       [=](const CellChange& change) { return change.base == cell; });
  };
  const auto isFine = [](const CellRecord& cell) {
    return cell.faults.empty() && cell.answer && cell.answer->hasFigure();
  };
  const auto isBad = [](const CellRecord& cell) {
    return !cell.faults.empty() || (cell.answer && !cell.answer->hasFigure());
  };
  const bool newDoesNotCome = newer.driver.renderer.empty() && !newer.endingSentence.empty();
  changes.hopeless = changes.cells.empty();
  for (std::size_t cell = 0; cell < base.cells.size(); ++cell) {
    const auto same = indexOf(base.cells[cell].cell, newer);
    if (!same) {
      changes.onlyBase.push_back(cell);
    } else if (!hasRatio(cell)) {
      const CellRecord& ofBase = base.cells[cell];
      const CellRecord& ofNew = newer.cells[*same];
      if (newDoesNotCome || (isFine(ofBase) && isBad(ofNew))) {
        changes.newFails.push_back(*same);
        changes.hopeless = false;
      } else if (isFine(ofNew) && isBad(ofBase)) {
        changes.baseFails.push_back(cell);
      } else {
        changes.withoutFigures.push_back(cell);
        changes.hopeless = changes.hopeless && isBad(ofBase);
      }
    }
  }
  for (std::size_t cell = 0; cell < newer.cells.size(); ++cell) {
    if (!indexOf(newer.cells[cell].cell, base)) {
      changes.onlyNew.push_back(cell);
    }
  }
}

}  // namespace

Changes changesOf(const Comparison& comparison) {
  Evidence evidence = evidenceOf(comparison);
  Changes changes;
  judge(evidence, comparison.threshold, kInTheEnd, changes.overall);
  changes.cells = std::move(evidence.cells);
  changes.moved = kPercent * std::expm1(evidence.widening);
  if (evidence.overall) {
    const double alarms = kInTheEnd.falseAlarms / 2;
    changes.visibleOverall =
        visibleChange(*evidence.overall, alarms, comparison, evidence.widening);
    std::vector<double> visible;
    for (const Estimate& estimate : evidence.estimates) {
      visible.push_back(visibleChange(estimate,
                                      alarms / static_cast<double>(evidence.estimates.size()),
                                      comparison, evidence.widening));
    }
    changes.visible = median(std::move(visible));
  }
  findFailures(comparison, changes);
  return changes;
}

std::vector<bool> decidedSoFar(const Comparison& comparison) {
  Evidence evidence = evidenceOf(comparison);
  Change overall;
  judge(evidence, comparison.threshold, kOnTheWay, overall);
  std::vector<bool> decided(comparison.base.record.cells.size(), false);
  // As long as the mean over all is open, every cell adds to it.
  if (overall.verdict != Verdict::kUndecided) {
    for (const CellChange& cell : evidence.cells) {
      decided[cell.base] = cell.change.verdict != Verdict::kUndecided;
    }
  }
  return decided;
}

BisectionStatus bisectionStatusOf(const Changes& changes) {
  bool open = changes.cells.empty() || changes.overall.mayBeSlower;
  bool slower = !changes.newFails.empty() || changes.overall.verdict == Verdict::kSlower;
  for (const CellChange& cell : changes.cells) {
    slower = slower || cell.change.verdict == Verdict::kSlower;
    open = open || cell.change.mayBeSlower;
  }
  if (changes.hopeless) {
    return kUnusable;
  }
  return slower ? kSomethingSlower : open ? kUndecidedStatus : kNothingSlower;
}

}  // namespace survey
