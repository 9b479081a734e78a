#include "survey/judge/Blocks.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

#include "survey/judge/States.h"
#include "survey/statistics/Averages.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

/// What some frames drew, in which time.
struct Sum {
  double primitives = 0;
  double nanoseconds = 0;

  void add(const Frame& frame) {
    primitives += static_cast<double>(frame.primitives);
    nanoseconds += static_cast<double>(frame.time());
  }
  double logRate() const { return std::log(primitives * kNanosecondsPerSecond / nanoseconds); }
};

double logRateOf(const Frame& frame) {
  Sum sum;
  sum.add(frame);
  return sum.logRate();
}

/// Of one cell in one block.
struct Tally {
  Sum base;
  Sum own;
  std::vector<double> values;  ///< by frame, or by pair
};

using Tallies = std::vector<std::map<std::size_t, Tally>>;  ///< by cell and block

/// The rounds that were not disturbed on any of these sides, or all if there are none.
std::vector<std::size_t> roundsThatCount(const std::vector<const std::vector<Frame>*>& sides) {
  std::vector<std::size_t> undisturbed;
  std::vector<std::size_t> all;
  for (std::size_t i = 0; i < sides.front()->size(); ++i) {
    all.push_back(i);
    if (std::none_of(sides.begin(), sides.end(),
                     [=](const std::vector<Frame>* frames) { return (*frames)[i].disturbed; })) {
      undisturbed.push_back(i);
    }
  }
  return undisturbed.empty() ? all : undisturbed;
}

BlockRates ratesIn(const Tallies& tallies, bool overBase) {
  BlockRates rates{CellsBlocks(tallies.size()), CellsBlocks(tallies.size())};
  for (std::size_t cell = 0; cell < tallies.size(); ++cell) {
    for (const auto& [block, tally] : tallies[cell]) {
      rates.all[cell].push_back(
          {block, tally.own.logRate() - (overBase ? tally.base.logRate() : 0)});
      rates.typical[cell].push_back({block, median(tally.values)});
    }
  }
  return rates;
}

}  // namespace

BlockRates blockRatesOf(const SideView& side, const std::vector<bool>& counts) {
  Tallies tallies(side.record->cells.size());
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const Visit& visit = side.record->visits[i];
    const std::vector<Frame>& frames = side.frames(visit);
    if (counts[i] && !frames.empty()) {
      Tally& tally = tallies[visit.cell][visit.block];
      for (const std::size_t round : roundsThatCount({&frames})) {
        tally.own.add(frames[round]);
        tally.values.push_back(logRateOf(frames[round]));
      }
    }
  }
  return ratesIn(tallies, false);
}

BlockRates blockRatiosOf(const SideView& newer, const std::vector<bool>& counts) {
  const SideView base{newer.record, 0};
  Tallies tallies(newer.record->cells.size());
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const Visit& visit = newer.record->visits[i];
    const std::vector<Frame>& ofNew = newer.frames(visit);
    const std::vector<Frame>& ofBase = base.frames(visit);
    if (counts[i] && !ofNew.empty()) {
      Tally& tally = tallies[visit.cell][visit.block];
      for (const std::size_t round : roundsThatCount({&ofBase, &ofNew})) {
        tally.base.add(ofBase[round]);
        tally.own.add(ofNew[round]);
        tally.values.push_back(logRateOf(ofNew[round]) - logRateOf(ofBase[round]));
      }
    }
  }
  return ratesIn(tallies, true);
}

std::vector<double> valuesOf(const std::vector<BlockValue>& blocks) {
  std::vector<double> values;
  std::transform(blocks.begin(), blocks.end(), std::back_inserter(values),
                 [](const BlockValue& block) { return block.value; });
  return values;
}

std::optional<Stalls> stallsOf(const SideView& side, std::size_t cell) {
  constexpr double kFar = 1.25;
  const States states = statesOf(*side.record);
  std::map<CoreState, std::vector<const Frame*>> frames;
  for (std::size_t i = 0; i < side.record->visits.size(); ++i) {
    const Visit& visit = side.record->visits[i];
    if (visit.cell == cell && states.ofVisits[i]) {
      for (const Frame& frame : side.frames(visit)) {
        if (!frame.disturbed) {
          frames[*states.ofVisits[i]].push_back(&frame);
        }
      }
    }
  }
  double count = 0;
  std::vector<double> longer;
  for (const auto& [state, ofState] : frames) {
    std::vector<double> logarithms;
    std::transform(ofState.begin(), ofState.end(), std::back_inserter(logarithms),
                   [](const Frame* frame) { return logRateOf(*frame); });
    const double typical = kNanosecondsPerSecond / std::exp(median(std::move(logarithms)));
    count += static_cast<double>(ofState.size());
    for (const Frame* const frame : ofState) {
      const double usual = typical * static_cast<double>(frame->primitives);
      if (static_cast<double>(frame->time()) > kFar * usual) {
        longer.push_back(static_cast<double>(frame->time()) - usual);
      }
    }
  }
  return longer.empty()
             ? std::nullopt
             : std::optional(Stalls{static_cast<double>(longer.size()) / count, mean(longer)});
}

}  // namespace survey
