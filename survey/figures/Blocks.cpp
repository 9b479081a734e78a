#include "survey/figures/Blocks.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "survey/statistics/CommonFactor.h"
#include "survey/statistics/Quantiles.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

double logarithmOfRate(const Frame& frame) {
  return std::log(static_cast<double>(frame.primitives) * kNanosecondsPerSecond /
                  static_cast<double>(frame.wall));
}

Sighting sightingOf(const Visit& visit) {
  const bool someUndisturbed = std::any_of(visit.frames.begin(), visit.frames.end(),
                                           [](const Frame& frame) { return !frame.disturbed; });
  Sighting sighting{visit.cell, {}};
  for (const Frame& frame : visit.frames) {
    if (!frame.disturbed || !someUndisturbed) {
      sighting.values.push_back(logarithmOfRate(frame));
    }
  }
  return sighting;
}

double mean(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// Typical levels of the machine's slow and fast times, beside each other.
double slowestOf(const CommonFactorFit& fit) {
  constexpr double kTail = 0.05;
  return fit.levels.empty()
             ? 1
             : std::exp(quantile(fit.levels, kTail) - quantile(fit.levels, 1 - kTail));
}

}  // namespace

BlockValues blockValuesOf(const Record& record) {
  std::vector<Sighting> sightings;
  for (const Visit& visit : record.visits) {
    sightings.push_back(sightingOf(visit));
  }
  const CommonFactorFit fit = fitCommonFactor(sightings, record.cells.size());

  std::map<std::size_t, std::vector<double>> levels;
  std::vector<std::map<std::size_t, std::vector<double>>> corrected(record.cells.size());
  for (std::size_t i = 0; i < record.visits.size(); ++i) {
    const Visit& visit = record.visits[i];
    levels[visit.block].push_back(fit.levels[i]);
    corrected[visit.cell][visit.block].push_back(fit.corrected[i]);
  }
  BlockValues result{std::vector<std::vector<BlockValue>>(record.cells.size()), {}, slowestOf(fit)};
  for (const auto& [block, ofVisits] : levels) {
    result.levels.push_back(mean(ofVisits));
  }
  for (std::size_t cell = 0; cell < corrected.size(); ++cell) {
    for (const auto& [block, ofVisits] : corrected[cell]) {
      result.values[cell].push_back({block, median(ofVisits)});
    }
  }
  return result;
}

std::vector<std::vector<BlockRatio>> blockRatiosOf(const Comparison& comparison) {
  const auto& base = comparison.base.record.visits;
  const auto& newer = comparison.newer.record.visits;
  /// Of one cell in one block.
  struct Pairs {
    std::vector<double> undisturbed;
    std::vector<double> all;
  };
  std::vector<std::map<std::size_t, Pairs>> pairs(comparison.base.record.cells.size());
  for (std::size_t i = 0; i < base.size(); ++i) {
    Pairs& own = pairs[base[i].cell][base[i].block];
    for (std::size_t j = 0; j < base[i].frames.size(); ++j) {
      const Frame& one = base[i].frames[j];
      const Frame& other = newer[i].frames[j];
      own.all.push_back(logarithmOfRate(other) - logarithmOfRate(one));
      if (!one.disturbed && !other.disturbed) {
        own.undisturbed.push_back(own.all.back());
      }
    }
  }
  std::vector<std::vector<BlockRatio>> ratios(pairs.size());
  for (std::size_t cell = 0; cell < pairs.size(); ++cell) {
    for (const auto& [block, own] : pairs[cell]) {
      ratios[cell].push_back({block, median(own.undisturbed.empty() ? own.all : own.undisturbed)});
    }
  }
  return ratios;
}

}  // namespace survey
