#include "survey/judge/Blocks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

#include "survey/statistics/Averages.h"
#include "survey/statistics/CommonFactor.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;
/// Each costs a fit.
constexpr std::size_t kMostGroups = 32;

double logarithmOfRate(const Frame& frame) {
  return std::log(static_cast<double>(frame.primitives) * kNanosecondsPerSecond /
                  static_cast<double>(frame.wall));
}

/// A side's part of a visit.
struct Own {
  const Visit* visit;
  const std::vector<Frame>* frames;
};

Sighting sightingOf(const Own& own) {
  const bool someUndisturbed = std::any_of(own.frames->begin(), own.frames->end(),
                                           [](const Frame& frame) { return !frame.disturbed; });
  Sighting sighting{own.visit->cell, {}};
  for (const Frame& frame : *own.frames) {
    if (!frame.disturbed || !someUndisturbed) {
      sighting.values.push_back(logarithmOfRate(frame));
    }
  }
  return sighting;
}

/// Typical levels of the machine's slow and fast times, beside each other.
double slowestOf(const CommonFactorFit& fit) {
  constexpr double kTail = 0.05;
  return fit.levels.empty()
             ? 1
             : std::exp(quantile(fit.levels, kTail) - quantile(fit.levels, 1 - kTail));
}

std::vector<Sighting> sightingsOf(const std::vector<Own>& visits) {
  std::vector<Sighting> sightings;
  std::transform(visits.begin(), visits.end(), std::back_inserter(sightings), sightingOf);
  return sightings;
}

BlockFit blockFitOf(const std::vector<Own>& visits, const CommonFactorFit& fit) {
  const std::size_t cellCount = fit.effects.size();
  std::map<std::size_t, std::vector<double>> levels;
  std::vector<std::map<std::size_t, std::vector<double>>> corrected(cellCount);
  for (std::size_t i = 0; i < visits.size(); ++i) {
    const Visit& visit = *visits[i].visit;
    levels[visit.block].push_back(fit.levels[i]);
    corrected[visit.cell][visit.block].push_back(fit.corrected[i]);
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

BlockFits blockFitsOf(const SideView& side) {
  std::size_t blocks = 0;
  std::vector<Own> all;
  for (const Visit& visit : side.record->visits) {
    if (!side.frames(visit).empty()) {
      blocks = std::max(blocks, visit.block + 1);
      all.push_back({&visit, &side.frames(visit)});
    }
  }
  const CommonFactorFit fit = fitCommonFactor(sightingsOf(all), side.record->cells.size());
  BlockFits fits{blockFitOf(all, fit), {}};
  // Of neighbours, so that what moves slowly is in one group and not a bit in each.
  const std::size_t size = (blocks + kMostGroups - 1) / kMostGroups;
  for (std::size_t first = 0; first < blocks; first += size) {
    std::vector<Own> others;
    std::copy_if(all.begin(), all.end(), std::back_inserter(others), [&](const Own& own) {
      return own.visit->block < first || own.visit->block >= first + size;
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

CellsBlocks blockRatiosOf(const SideView& newer) {
  const SideView base{newer.record, 0};
  /// Of one cell in one block.
  struct Pairs {
    std::vector<double> undisturbed;
    std::vector<double> all;
  };
  std::vector<std::map<std::size_t, Pairs>> pairs(newer.record->cells.size());
  for (const Visit& visit : newer.record->visits) {
    const std::vector<Frame>& ofNew = newer.frames(visit);
    for (std::size_t i = 0; i < ofNew.size(); ++i) {
      const Frame& one = base.frames(visit)[i];
      const Frame& other = ofNew[i];
      Pairs& own = pairs[visit.cell][visit.block];
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
