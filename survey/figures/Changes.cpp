#include "survey/figures/Changes.h"

#include <algorithm>
#include <cmath>

#include "survey/figures/Evidence.h"
#include "survey/statistics/Holm.h"
#include "survey/statistics/Quantiles.h"
#include "survey/statistics/StudentsT.h"

namespace survey {
namespace {

constexpr double kPercent = 100;

struct Sureness {
  double falseAlarms;  ///< the chance of one at most, over the whole comparison
  double confidence;   ///< of the intervals
};
constexpr Sureness kInTheEnd{0.05, 0.95};
constexpr Sureness kOnTheWay{0.001, 0.99};

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

struct Judgement {
  std::vector<CellChange> cells;  ///< in the order of the evidence
  Change overall;
};

Judgement judge(const Evidence& evidence, double threshold, const Sureness& sureness) {
  const double widening = evidence.widening;
  const bool overallChanged =
      evidence.overall &&
      probabilityWithin(*evidence.overall, threshold, widening) <= sureness.falseAlarms / 2;
  std::vector<double> probabilities;
  for (const Estimate& estimate : evidence.estimates) {
    probabilities.push_back(probabilityWithin(estimate, threshold, widening));
  }
  const std::vector<bool> changed =
      positives(probabilities, sureness.falseAlarms / (overallChanged ? 1 : 2));
  Judgement judgement;
  for (std::size_t i = 0; i < evidence.cells.size(); ++i) {
    const auto& [base, newer, blocks] = evidence.cells[i];
    judgement.cells.push_back(
        {base, newer,
         changeFrom(evidence.estimates[i], changed[i], threshold, widening, sureness.confidence)});
    judgement.cells.back().change.blocks = blocks;
  }
  if (evidence.overall) {
    judgement.overall =
        changeFrom(*evidence.overall, overallChanged, threshold, widening, sureness.confidence);
  }
  return judgement;
}

/// By how many percent a cell must be slower for that to be found four times of five.
double visibleChange(const Estimate& estimate, double falseAlarms, const Comparison& comparison,
                     double widening) {
  constexpr double kFourOfFive = 0.4;  // two-sided, for a tail of a fifth
  const double freedom = estimate.variance.freedom;
  if (!(freedom > 0)) {
    return kPercent;
  }
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
      const bool wasDrawn = std::any_of(newer.visits.begin(), newer.visits.end(),
                                        [&](const Visit& visit) { return visit.cell == *same; });
      if (ofNew.isGivenUp() && !ofBase.isGivenUp() && wasDrawn) {
        changes.newDies.push_back(*same);
        changes.hopeless = false;
      } else if (newDoesNotCome || (isFine(ofBase) && isBad(ofNew))) {
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
  const Evidence evidence = evidenceOf(comparison);
  auto [cells, overall] = judge(evidence, comparison.threshold, kInTheEnd);
  Changes changes;
  changes.cells = std::move(cells);
  changes.overall = overall;
  changes.notInOverall = evidence.notInOverall;
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
  const auto [cells, overall] = judge(evidenceOf(comparison), comparison.threshold, kOnTheWay);
  std::vector<bool> decided(comparison.base.record.cells.size(), false);
  // As long as the mean over all is open, every cell adds to it.
  if (overall.verdict != Verdict::kUndecided) {
    for (const CellChange& cell : cells) {
      decided[cell.base] = cell.change.verdict != Verdict::kUndecided;
    }
  }
  return decided;
}

BisectionStatus bisectionStatusOf(const Changes& changes) {
  bool open = changes.cells.empty() || changes.overall.mayBeSlower || !changes.newDies.empty();
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
