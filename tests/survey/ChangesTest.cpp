// Verdicts on machines whose truth is known.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "survey/figures/Changes.h"
#include "survey/statistics/SharedVariance.h"
#include "survey/statistics/TrimmedMean.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

TEST(TrimmedMean, IsTukeyAndMcLaughlins) {
  // Ten values, two of them cut at either end; the error from the winsorized ones, by hand:
  // 3 3 3 4 5 6 7 8 8 8 deviate from 5.5 by squares of 42.5 in sum; sqrt(42.5 / (6 * 5)).
  const std::vector<double> values = {3, 4, 1, 5, 100, 2, 8, 6, 7, 9};
  const TrimmedMean mean = trimmedMean(values);
  EXPECT_DOUBLE_EQ(mean.mean, 5.5);
  EXPECT_EQ(mean.freedom(), 5);
  EXPECT_NEAR(mean.variance(), 42.5 / 30, 1e-12);
  EXPECT_TRUE(std::isinf(trimmedMean(std::vector<double>{3}).variance()));
}

TEST(JointMean, CountsWhatMovesAllCellsAtOnePlaceAsOneMove) {
  const std::vector<double> values = {1, 2, 3, 4};
  const std::vector<double> others = {4, 3, 2, 1};
  const std::vector<std::size_t> places = {0, 1, 2, 3};
  JointMean together;
  together.add(trimmedMean(values), places);
  together.add(trimmedMean(values), places);
  EXPECT_NEAR(together.variance(), trimmedMean(values).variance(), 1e-12);
  JointMean opposed;
  opposed.add(trimmedMean(values), places);
  opposed.add(trimmedMean(others), places);
  EXPECT_NEAR(opposed.variance(), 0, 1e-12);
}

TEST(SharedVariance, FindsWhatTheVariancesWereDrawnAround) {
  std::mt19937_64 random(3);
  constexpr double kFreedom = 5;
  for (const double spread : {8.0, 1e9}) {  // degrees of freedom of the common one
    std::vector<Variance> drawn;
    for (int i = 0; i < 2000; ++i) {
      const double around = 4 * spread / std::chi_squared_distribution(spread)(random);
      drawn.push_back(
          {around * std::chi_squared_distribution(kFreedom)(random) / kFreedom, kFreedom});
    }
    const Variance common = commonVariance(drawn);
    EXPECT_NEAR(common.value, 4, 0.3);
    EXPECT_GT(common.freedom, spread > 100 ? 100 : 6);
    EXPECT_LT(common.freedom, spread > 100 ? INFINITY : 11) << common.freedom;
  }
  const Variance between = moderated({1, 5}, {3, 15});
  EXPECT_EQ(between.value, 2.5);
  EXPECT_EQ(between.freedom, 20);
  EXPECT_EQ(moderated({1, 5}, commonVariance(std::vector<Variance>{{1, 5}, {2, 5}})).value, 1);
}

Changes simulatedChanges(const Simulation& machine, double effect, double threshold,
                         std::mt19937_64& random) {
  Comparison comparison = simulateTurns(machine, effect, random);
  comparison.threshold = threshold;
  return changesOf(comparison);
}

bool isChange(const Change& change) {
  return change.verdict == Verdict::kSlower || change.verdict == Verdict::kFaster;
}

bool anyChange(const Changes& changes) {
  return isChange(changes.overall) ||
         std::any_of(changes.cells.begin(), changes.cells.end(),
                     [](const CellChange& cell) { return isChange(cell.change); });
}

class ChangesOf : public testing::TestWithParam<Simulation> {};
INSTANTIATE_TEST_SUITE_P(Machine, ChangesOf,
                         testing::Values(Simulation{.dwell = 0.5, .cells = 10, .blocks = 8},
                                         Simulation{.dwell = 2, .cells = 10, .blocks = 12},
                                         Simulation{
                                             .dwell = 2, .cells = 20, .blocks = 12, .brief = 3},
                                         Simulation{.dwell = 20, .cells = 30, .blocks = 6},
                                         Simulation{.dwell = 1e6, .cells = 3, .blocks = 20}),
                         [](const auto& regime) { return std::to_string(regime.index); });

TEST_P(ChangesOf, RaiseAFalseAlarmInOneComparisonOfTwentyAtMost) {
  constexpr int kComparisons = 400;
  constexpr int kMost = 31;  // 20, and two and a half of the deviations of 400 such draws
  std::mt19937_64 random(23);
  for (const double effect : {0.0, -0.03}) {
    int alarms = 0;
    for (int i = 0; i < kComparisons; ++i) {
      // At the very edge: any more would be a change.
      alarms +=
          anyChange(simulatedChanges(GetParam(), effect, std::max(1e-3, -100 * effect), random));
    }
    EXPECT_LE(alarms, kMost) << effect;
  }
}

/// As a sitting leaves it that stops drawing what is decided, looking every second block from the
/// sixth on.
Comparison lookedAt(const Comparison& whole, std::size_t blocks) {
  Comparison comparison = whole;
  std::vector<bool> decided(whole.base.record.cells.size(), false);
  const auto takeVisits = [&](const Record& from, Record& to, std::size_t block) {
    std::copy_if(from.visits.begin(), from.visits.end(), std::back_inserter(to.visits),
                 [&](const Visit& v) { return v.block == block && !decided[v.cell]; });
  };
  comparison.base.record.visits.clear();
  comparison.newer.record.visits.clear();
  for (std::size_t block = 0; block < blocks; ++block) {
    if (block >= 6 && block % 2 == 0) {
      decided = decidedSoFar(comparison);
    }
    takeVisits(whole.base.record, comparison.base.record, block);
    takeVisits(whole.newer.record, comparison.newer.record, block);
  }
  return comparison;
}

TEST(DecidedSoFar, AddsNoFalseAlarms) {
  constexpr int kComparisons = 300;
  struct Case {
    std::size_t slower;  ///< cells that are slower by just the threshold, of ten
    std::size_t blocks;
    int most;
  };
  // 15 are 5 %, and two and a half of their deviations. With many looks the careful rule has far
  // fewer, where one that is no surer on the way than in the end would have 19.
  for (const auto& [slower, blocks, most] : {Case{0, 16, 24}, Case{10, 16, 24}, Case{5, 60, 8}}) {
    std::mt19937_64 random(37);
    int alarms = 0;
    std::size_t spared = 0;
    for (int i = 0; i < kComparisons; ++i) {
      Comparison comparison = simulateTurns({.dwell = 2, .cells = 10, .blocks = blocks}, 0, random);
      comparison.threshold = 4;
      for (Visit& visit : comparison.newer.record.visits) {
        for (Frame& frame : visit.frames) {
          frame.wall = visit.cell < slower ? std::llround(frame.wall / 0.96) : frame.wall;
        }
      }
      const std::size_t visits = comparison.base.record.visits.size();
      comparison = lookedAt(comparison, blocks);
      spared += visits - comparison.base.record.visits.size();
      alarms += anyChange(changesOf(comparison)) ? 1 : 0;
    }
    EXPECT_LE(alarms, most) << slower;
    // What is clear early need not be drawn on; at the threshold's edge nothing ever is.
    EXPECT_EQ(spared > 0, slower < 10) << spared;
  }
}

TEST_P(ChangesOf, FindWhatIsThere) {
  constexpr int kComparisons = 100;
  std::mt19937_64 random(29);
  int found = 0;
  int held = 0;
  for (int i = 0; i < kComparisons; ++i) {
    const Changes changes = simulatedChanges(GetParam(), -0.03, 0.5, random);
    found += changes.overall.verdict == Verdict::kSlower ? 1 : 0;
    held += changes.overall.ratio.contains(0.97) ? 1 : 0;
  }
  EXPECT_GE(found, GetParam().cells < 10 ? 50 : 80);
  EXPECT_GE(held, 90);
}

TEST(ChangesOfSidesInTurns, TakeACellThatOneSideGivesUpForNoRatio) {
  std::mt19937_64 random(41);
  Comparison comparison =
      simulateTurns({.dwell = 2, .cells = 6, .blocks = 20, .brief = 2}, 0, random);
  comparison.threshold = 10;
  EXPECT_EQ(changesOf(comparison).notInOverall, (std::vector<std::size_t>{0}));
  comparison.newer.record.cells[0].faults = {"died", "died"};
  comparison.base.record.cells[0].faults = {"died"};
  comparison.base.record.cells[1].faults = {"died", "died"};
  const Changes changes = changesOf(comparison);
  EXPECT_EQ(changes.newDies, (std::vector<std::size_t>{0}));
  EXPECT_EQ(changes.baseFails, (std::vector<std::size_t>{1}));
  EXPECT_EQ(changes.cells.size(), 4U);
  EXPECT_EQ(bisectionStatusOf(changes), kUndecidedStatus);
  std::erase_if(comparison.newer.record.visits, [](const Visit& visit) { return visit.cell == 0; });
  std::erase_if(comparison.base.record.visits, [](const Visit& visit) { return visit.cell == 0; });
  comparison.base.record.cells[0].faults.clear();
  EXPECT_EQ(changesOf(comparison).newFails, (std::vector<std::size_t>{0}));
  EXPECT_EQ(bisectionStatusOf(changesOf(comparison)), kSomethingSlower);
}

TEST(ChangesOfSidesInTurns, AreUnsureOfTheMeanWhereACellIsHardlyKnown) {
  constexpr int kComparisons = 400;
  constexpr int kMost = 18;  // 2.5 %, and two and a half of their deviations
  std::mt19937_64 random(47);
  int alarms = 0;
  for (int i = 0; i < kComparisons; ++i) {
    const Simulation machine{.dwell = 2, .cells = 3, .blocks = 30, .astray = 0, .brief = 2};
    alarms += isChange(simulatedChanges(machine, 0, 1e-3, random).overall) ? 1 : 0;
  }
  EXPECT_LE(alarms, kMost);
  // One block each, though not the same one, says nothing at all.
  Comparison comparison = simulateTurns({.dwell = 2, .cells = 2, .blocks = 2}, -0.5, random);
  for (Record* const record : {&comparison.base.record, &comparison.newer.record}) {
    std::erase_if(record->visits, [](const Visit& visit) { return visit.cell != visit.block; });
  }
  comparison.threshold = 1;
  EXPECT_EQ(bisectionStatusOf(changesOf(comparison)), kUndecidedStatus);
}

TEST(ChangesOfTwoSittings, TakeASlowerMachineForNoSlowerDriver) {
  std::mt19937_64 random(31);
  Comparison comparison;
  comparison.threshold = 5;
  comparison.base = {"old", simulate({.dwell = 1e6, .cells = 6}, random).record};
  comparison.newer = {"new", comparison.base.record};
  for (Visit& visit : comparison.newer.record.visits) {
    for (Frame& frame : visit.frames) {
      frame.wall = frame.wall * 5 / 4;
    }
  }
  EXPECT_EQ(bisectionStatusOf(changesOf(comparison)), kSomethingSlower);
  comparison.base.record.speeds = {1e9, 1.01e9};
  comparison.newer.record.speeds = {0.8e9, 0.81e9};
  const Changes changes = changesOf(comparison);
  EXPECT_EQ(bisectionStatusOf(changes), kUndecidedStatus);
  EXPECT_NEAR(changes.overall.ratio.middle, 0.8, 1e-3);
  EXPECT_GT(changes.overall.ratio.high, 0.98);
  EXPECT_NEAR(changes.moved, 25, 1);
}

TEST(ChangesOfTwoSittings, TakeASlowStretchForNoSlowerDriver) {
  std::mt19937_64 random(43);
  int alarms = 0;
  for (int i = 0; i < 8; ++i) {
    const Record both = simulate({.dwell = 1e6, .cells = 4, .blocks = 128}, random).record;
    Comparison comparison{false, 5, {"old", both}, {"new", both}};
    comparison.base.record.visits.clear();
    comparison.newer.record.visits.clear();
    for (Visit visit : both.visits) {
      const bool isNew = visit.block % 2 == 1;
      visit.block /= 2;
      for (Frame& frame : visit.frames) {
        frame.wall = isNew && visit.block / 16 == 2 ? frame.wall * 3 / 2 : frame.wall;
      }
      (isNew ? comparison.newer : comparison.base).record.visits.push_back(visit);
    }
    alarms += bisectionStatusOf(changesOf(comparison)) == kSomethingSlower ? 1 : 0;
    // Where the core's speed is known, it accounts for the stretch.
    comparison.base.record.speeds.assign(64, 1e9);
    comparison.newer.record.speeds = comparison.base.record.speeds;
    std::fill_n(comparison.newer.record.speeds.begin() + 32, 16, 1e9 / 1.5);
    EXPECT_GT(changesOf(comparison).moved, 8);
  }
  EXPECT_LE(alarms, 1);
}

}  // namespace
}  // namespace survey
