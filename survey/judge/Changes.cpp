#include "survey/judge/Changes.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <numeric>

#include "survey/judge/Evidence.h"
#include "survey/statistics/Averages.h"
#include "survey/statistics/Significance.h"

namespace survey {
namespace {

constexpr double kPercent = 100;

struct Sureness {
  double falseAlarms;  ///< the chance of one at most, over the whole comparison
  double confidence;   ///< of the intervals
};
constexpr Sureness kInTheEnd{0.05, 0.95};
constexpr Sureness kOnTheWay{0.001, 0.99};

/// How probable it is to see so large a change, in either direction, where the true one is the
/// threshold's in this one.
double probabilityWithin(const Estimate& estimate, double threshold, double allowance) {
  if (allowance > 0) {
    return 1;
  }
  const double size = std::abs(estimate.mean);
  const double limit =
      std::abs(std::log1p((estimate.mean < 0 ? -threshold : threshold) / kPercent));
  const double error = std::sqrt(estimate.variance.value);
  const auto above = [&](double excess) {
    return excess == 0 ? 0.5 : probabilityAbove(excess / error, estimate.variance.freedom);
  };
  return std::min(1.0, above(size - limit) + above(size + limit));
}

Change changeFrom(const Estimate& estimate, bool changed, double threshold, double allowance,
                  double confidence) {
  const Interval interval = intervalOf(estimate, confidence);
  Change change;
  change.ratio = exponential({interval.low + std::log1p(-allowance), interval.middle,
                              interval.high + std::log1p(allowance)});
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

/// A judgement for each side's evidence; all share one chance of false alarms.
std::vector<Judgement> judge(const std::vector<Evidence>& evidence, double threshold,
                             const Sureness& sureness) {
  std::vector<double> ofMeans;
  std::vector<double> ofCells;
  for (const auto& [cells, estimates, typical, overall, notInOverall, allowance, unlike] :
       evidence) {
    ofMeans.push_back(overall ? probabilityWithin(*overall, threshold, allowance) : 1);
    for (const Estimate& estimate : estimates) {
      ofCells.push_back(probabilityWithin(estimate, threshold, allowance));
    }
  }
  const std::vector<bool> meansChanged = positives(ofMeans, sureness.falseAlarms / 2);
  const bool all = std::find(meansChanged.begin(), meansChanged.end(), false) == meansChanged.end();
  const std::vector<bool> cellsChanged = positives(ofCells, sureness.falseAlarms / (all ? 1 : 2));

  std::vector<Judgement> judgements;
  auto changed = cellsChanged.begin();
  for (std::size_t side = 0; side < evidence.size(); ++side) {
    const auto& [cells, estimates, typical, overall, notInOverall, allowance, unlike] =
        evidence[side];
    Judgement& judgement = judgements.emplace_back();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      CellChange& cell = judgement.cells.emplace_back(CellChange{
          cells[i].base,
          cells[i].newer,
          changeFrom(estimates[i], *changed++, threshold, allowance, sureness.confidence),
          {}});
      cell.change.units = cells[i].units;
      if (!typical.empty()) {
        const Interval ofPairs = exponential(intervalOf(typical[i], sureness.confidence));
        cell.typical = cell.change.ratio.meets(ofPairs) ? std::nullopt : std::optional(ofPairs);
      }
    }
    if (overall) {
      judgement.overall =
          changeFrom(*overall, meansChanged[side], threshold, allowance, sureness.confidence);
    }
  }
  return judgements;
}

/// Views of one name together, in the order of time.
std::vector<Measured> measuredOf(const std::vector<SideView>& views) {
  std::vector<Measured> sides;
  for (const SideView& view : views) {
    const auto same = std::find_if(sides.begin(), sides.end(), [&](const Measured& side) {
      return side.front().name() == view.name();
    });
    if (same == sides.end()) {
      sides.push_back({view});
    } else {
      same->push_back(view);
    }
  }
  for (Measured& side : sides) {
    std::stable_sort(side.begin(), side.end(), [](const SideView& one, const SideView& other) {
      return beginOf(one) < beginOf(other);
    });
  }
  return sides;
}

std::vector<Evidence> evidenceOf(const std::vector<Measured>& sides) {
  std::vector<Evidence> evidence;
  std::transform(sides.begin() + 1, sides.end(), std::back_inserter(evidence),
                 [&](const Measured& newer) { return evidenceOf(sides.front(), newer); });
  return evidence;
}

/// By how many percent a cell must be slower for that to be found four times of five.
double visibleChange(const Estimate& estimate, double falseAlarms, double threshold,
                     double allowance) {
  constexpr double kFourOfFive = 0.2;  // is missed
  const double freedom = estimate.variance.freedom;
  if (!(freedom > 0) || allowance > 0) {
    return kPercent;
  }
  const double reach = std::sqrt(estimate.variance.value) *
                       (criticalValue(falseAlarms, freedom) + criticalValue(kFourOfFive, freedom));
  return kPercent * (1 - (1 - threshold / kPercent) * std::exp(-reach));
}

/// `alarms` is the chance of a false one that a mean has, and all cells of all sides together.
void findVisible(const Evidence& evidence, double alarms, std::size_t means, std::size_t cells,
                 double threshold, Changes& changes) {
  if (!evidence.overall) {
    return;
  }
  changes.visibleOverall = visibleChange(*evidence.overall, alarms / static_cast<double>(means),
                                         threshold, evidence.allowance);
  std::vector<double> visible;
  for (const Estimate& estimate : evidence.estimates) {
    visible.push_back(visibleChange(estimate, alarms / static_cast<double>(cells), threshold,
                                    evidence.allowance));
  }
  changes.visible = median(std::move(visible));
}

/// What all sittings of a side say of a cell.
struct CellHistory {
  bool isFine = false;     ///< drawn without a fault in one at least
  bool isBad = false;      ///< speaks against it in one at least
  bool isGivenUp = false;  ///< likewise
  bool isDrawn = false;    ///< likewise
};

CellHistory historyOf(const Measured& side, const Cell& cell) {
  CellHistory history;
  for (const SideView& sitting : side) {
    const auto index = indexOf(cell, *sitting.record);
    if (!index) {
      continue;
    }
    const CellState& state = sitting.state(*index);
    history.isFine = history.isFine || (state.answer && !state.isBad());
    history.isBad = history.isBad || state.isBad();
    history.isGivenUp = history.isGivenUp || state.isGivenUp();
    history.isDrawn = history.isDrawn ||
                      std::any_of(sitting.record->visits.begin(), sitting.record->visits.end(),
                                  [&](const Visit& visit) {
                                    return visit.cell == *index && !sitting.frames(visit).empty();
                                  });
  }
  return history;
}

bool doesNotStart(const Measured& side) {
  return std::all_of(side.begin(), side.end(), [](const SideView& sitting) {
    return !sitting.side().started() && !sitting.side().whyNoWorker.empty();
  });
}

void findFailures(const Measured& base, const Measured& newer, Changes& changes) {
  const auto hasRatio = [&](std::size_t cell) {
    return std::any_of(changes.cells.begin(), changes.cells.end(),
                       [=](const CellChange& change) { return change.base == cell; });
  };
  changes.hopeless = changes.cells.empty();
  for (std::size_t cell = 0; cell < base.front().record->cells.size(); ++cell) {
    const Cell& planned = base.front().cell(cell);
    const auto same = indexOf(planned, *newer.front().record);
    const CellHistory ofBase = historyOf(base, planned);
    const CellHistory ofNew = historyOf(newer, planned);
    if (!same) {
      changes.onlyBase.push_back(cell);
    } else if (hasRatio(cell)) {
      // One of several sittings gave it up.
      if (ofNew.isGivenUp && !ofBase.isGivenUp) {
        changes.newDies.push_back(*same);
      }
    } else if (ofNew.isGivenUp && !ofBase.isGivenUp && ofNew.isDrawn) {
      changes.newDies.push_back(*same);
      changes.hopeless = false;
    } else if (doesNotStart(newer) || (ofBase.isFine && ofNew.isBad && !ofNew.isFine)) {
      changes.newFails.push_back(*same);
      changes.hopeless = false;
    } else if (ofNew.isFine && ofBase.isBad && !ofBase.isFine) {
      changes.baseFails.push_back(cell);
    } else {
      changes.withoutFigures.push_back(cell);
      changes.hopeless = changes.hopeless && ofBase.isBad;
    }
  }
  for (std::size_t cell = 0; cell < newer.front().record->cells.size(); ++cell) {
    if (!indexOf(newer.front().cell(cell), *base.front().record)) {
      changes.onlyNew.push_back(cell);
    }
  }
}

}  // namespace

std::vector<Changes> changesOf(const std::vector<SideView>& views, double threshold) {
  const std::vector<Measured> sides = measuredOf(views);
  const std::vector<Evidence> evidence = evidenceOf(sides);
  const std::size_t cells =
      std::transform_reduce(evidence.begin(), evidence.end(), std::size_t{0}, std::plus<>(),
                            [](const Evidence& ofSide) { return ofSide.estimates.size(); });
  std::vector<Judgement> judgements = judge(evidence, threshold, kInTheEnd);
  std::vector<Changes> all;
  for (std::size_t i = 0; i < evidence.size(); ++i) {
    Changes& changes = all.emplace_back();
    changes.base = sides.front().front();
    changes.newer = sides[i + 1].front();
    changes.sittings = std::min(sides.front().size(), sides[i + 1].size());
    changes.cells = std::move(judgements[i].cells);
    changes.overall = judgements[i].overall;
    changes.notInOverall = evidence[i].notInOverall;
    changes.allowance = kPercent * evidence[i].allowance;
    changes.inUnlikeStates = evidence[i].inUnlikeStates;
    findVisible(evidence[i], kInTheEnd.falseAlarms / 2, evidence.size(), cells, threshold, changes);
    findFailures(sides.front(), sides[i + 1], changes);
  }
  return all;
}

std::vector<std::size_t> changedMost(const std::vector<Changes>& changes, std::size_t most) {
  std::vector<std::pair<double, std::size_t>> changed;  // by size, largest first
  for (const Changes& ofSide : changes) {
    const bool all = ofSide.overall.verdict == Verdict::kSlower;
    for (const CellChange& cell : ofSide.cells) {
      const Verdict verdict = cell.change.verdict;
      if (all || verdict == Verdict::kSlower || verdict == Verdict::kFaster) {
        changed.emplace_back(-std::abs(std::log(cell.change.ratio.middle)), cell.base);
      }
    }
  }
  std::sort(changed.begin(), changed.end());
  std::vector<std::size_t> cells;
  for (const auto& [size, cell] : changed) {
    if (cells.size() < most && std::find(cells.begin(), cells.end(), cell) == cells.end()) {
      cells.push_back(cell);
    }
  }
  return cells;
}

std::vector<std::vector<bool>> decidedSoFar(const Record& record, double threshold) {
  const auto judgements = judge(evidenceOf(measuredOf(sidesOf(record))), threshold, kOnTheWay);
  std::vector<std::vector<bool>> decided(record.sides.size(),
                                         std::vector<bool>(record.cells.size(), false));
  for (std::size_t i = 0; i < judgements.size(); ++i) {
    // As long as the mean over all is open, every cell adds to it.
    if (judgements[i].overall.verdict != Verdict::kUndecided) {
      for (const CellChange& cell : judgements[i].cells) {
        decided[i + 1][cell.base] = cell.change.verdict != Verdict::kUndecided;
      }
    }
  }
  return decided;
}

BisectionStatus bisectionStatusOf(const Changes& changes) {
  bool open = changes.cells.empty() || changes.overall.mayBeSlower || !changes.newDies.empty() ||
              changes.newStopped();
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

BisectionStatus bisectionStatusOf(const std::vector<Changes>& changes) {
  for (const BisectionStatus worst : {kSomethingSlower, kUnusable, kUndecidedStatus}) {
    if (std::any_of(changes.begin(), changes.end(),
                    [=](const Changes& ofSide) { return bisectionStatusOf(ofSide) == worst; })) {
      return worst;
    }
  }
  return kNothingSlower;
}

}  // namespace survey
