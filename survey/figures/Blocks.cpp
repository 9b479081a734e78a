#include "survey/figures/Blocks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <numeric>

#include "survey/statistics/CommonFactor.h"
#include "survey/statistics/Quantiles.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;
/// Each costs a fit.
constexpr std::size_t kMostGroups = 32;

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

std::vector<Sighting> sightingsOf(const std::vector<const Visit*>& visits) {
  std::vector<Sighting> sightings;
  sightings.reserve(visits.size());
  for (const Visit* const visit : visits) {
    sightings.push_back(sightingOf(*visit));
  }
  return sightings;
}

BlockFit blockFitOf(const std::vector<const Visit*>& visits, const CommonFactorFit& fit) {
  const std::size_t cellCount = fit.effects.size();
  std::map<std::size_t, std::vector<double>> levels;
  std::vector<std::map<std::size_t, std::vector<double>>> corrected(cellCount);
  for (std::size_t i = 0; i < visits.size(); ++i) {
    levels[visits[i]->block].push_back(fit.levels[i]);
    corrected[visits[i]->cell][visits[i]->block].push_back(fit.corrected[i]);
  }
  BlockFit result{CellsBlocks(cellCount), 0, slowestOf(fit)};
  for (const auto& [block, ofVisits] : levels) {
    result.level += mean(ofVisits) / static_cast<double>(levels.size());
  }
  for (std::size_t cell = 0; cell < corrected.size(); ++cell) {
    for (const auto& [block, ofVisits] : corrected[cell]) {
      result.values[cell].push_back({block, median(ofVisits)});
    }
  }
  return result;
}

}  // namespace

BlockFits blockFitsOf(const Record& record) {
  std::size_t blocks = 0;
  std::vector<const Visit*> all;
  for (const Visit& visit : record.visits) {
    blocks = std::max(blocks, visit.block + 1);
    all.push_back(&visit);
  }
  const CommonFactorFit fit = fitCommonFactor(sightingsOf(all), record.cells.size());
  BlockFits fits{blockFitOf(all, fit), {}};
  // Of neighbours, so that what moves slowly is in one group and not a bit in each.
  const std::size_t size = (blocks + kMostGroups - 1) / kMostGroups;
  for (std::size_t first = 0; first < blocks; first += size) {
    std::vector<const Visit*> others;
    std::copy_if(all.begin(), all.end(), std::back_inserter(others), [&](const Visit* visit) {
      return visit->block < first || visit->block >= first + size;
    });
    fits.without.push_back(blockFitOf(others, fitPart(sightingsOf(others), fit.effects)));
  }
  return fits;
}

Jackknife rateOf(const BlockFits& fits, std::size_t cell) {
  return fits.jackknife([=](const BlockFit& fit) {
    std::vector<double> values;
    for (const BlockValue& block : fit.values[cell]) {
      values.push_back(block.value + fit.level);
    }
    return values;
  });
}

CellsBlocks blockRatiosOf(const Comparison& comparison) {
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
  CellsBlocks ratios(pairs.size());
  for (std::size_t cell = 0; cell < pairs.size(); ++cell) {
    for (const auto& [block, own] : pairs[cell]) {
      ratios[cell].push_back({block, median(own.undisturbed.empty() ? own.all : own.undisturbed)});
    }
  }
  return ratios;
}

}  // namespace survey
