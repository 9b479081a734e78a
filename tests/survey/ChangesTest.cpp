// Verdicts on machines whose truth is known.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "survey/judge/Changes.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

/// Of the new side.
Changes changesIn(const Record& record, double threshold) {
  return changesOf(sidesOf(record), threshold).front();
}

Changes simulatedChanges(const Simulation& machine, double effect, double threshold,
                         std::mt19937_64& random) {
  const Record record = simulateTurns(machine, {effect}, random);
  Changes changes = changesIn(record, threshold);
  changes.base.record = changes.newer.record = nullptr;  // which goes
  return changes;
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
Record lookedAt(const Record& whole, std::size_t blocks, double threshold) {
  Record record = whole;
  record.visits.clear();
  std::vector<bool> decided(whole.cells.size(), false);
  for (std::size_t block = 0; block < blocks; ++block) {
    if (block >= 6 && block % 2 == 0) {
      decided = decidedSoFar(record, threshold).at(1);
    }
    std::copy_if(whole.visits.begin(), whole.visits.end(), std::back_inserter(record.visits),
                 [&](const Visit& v) { return v.block == block && !decided[v.cell]; });
  }
  return record;
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
      constexpr double kThreshold = 4;
      Record record = simulateTurns({.dwell = 2, .cells = 10, .blocks = blocks}, {0}, random);
      for (std::size_t cell = 0; cell < slower; ++cell) {
        stretch(record, 1, 1 / 0.96, cell);
      }
      const std::size_t visits = record.visits.size();
      record = lookedAt(record, blocks, kThreshold);
      spared += visits - record.visits.size();
      alarms += anyChange(changesIn(record, kThreshold)) ? 1 : 0;
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
  constexpr double kThreshold = 10;
  std::mt19937_64 random(41);
  Record record = simulateTurns({.dwell = 2, .cells = 6, .blocks = 20, .brief = 2}, {0}, random);
  EXPECT_EQ(changesIn(record, kThreshold).notInOverall, (std::vector<std::size_t>{0}));
  std::vector<CellState>& ofBase = record.sides[0].cells;
  record.sides[1].cells[0].faults = {"died", "died"};
  ofBase[0].faults = {"died"};
  ofBase[1].faults = {"died", "died"};
  const Changes changes = changesIn(record, kThreshold);
  EXPECT_EQ(changes.newDies, (std::vector<std::size_t>{0}));
  EXPECT_EQ(changes.baseFails, (std::vector<std::size_t>{1}));
  EXPECT_EQ(changes.cells.size(), 4U);
  EXPECT_EQ(bisectionStatusOf(changes), kUndecidedStatus);
  std::erase_if(record.visits, [](const Visit& visit) { return visit.cell == 0; });
  ofBase[0].faults.clear();
  EXPECT_EQ(changesIn(record, kThreshold).newFails, (std::vector<std::size_t>{0}));
  EXPECT_EQ(bisectionStatusOf(changesIn(record, kThreshold)), kSomethingSlower);
}

TEST(ChangesOfSidesInTurns, JudgeEverySideUnderOneErrorRate) {
  const Simulation machine{.dwell = 1e6, .cells = 6, .blocks = 12};
  constexpr int kComparisons = 300;
  constexpr int kMost = 24;  // 5 %, and two and a half of their deviations
  std::mt19937_64 random(53);
  int alarms = 0;
  for (int i = 0; i < kComparisons; ++i) {
    const Record record = simulateTurns(machine, {0, 0, 0, 0}, random);
    const std::vector<Changes> changes = changesOf(sidesOf(record), 1e-3);
    alarms += std::any_of(changes.begin(), changes.end(), anyChange) ? 1 : 0;
  }
  EXPECT_LE(alarms, kMost);

  Record record = simulateTurns(machine, {0, -0.2}, random);
  std::vector<Changes> changes = changesOf(sidesOf(record), 5);
  EXPECT_EQ(changes[0].overall.verdict, Verdict::kSame);
  EXPECT_EQ(changes[1].overall.verdict, Verdict::kSlower);
  EXPECT_EQ(bisectionStatusOf(changes), kSomethingSlower);
  // A side may miss visits that the others have.
  for (Visit& visit : record.visits) {
    if (visit.cell == 2) {
      visit.frames[1].clear();
    }
  }
  changes = changesOf(sidesOf(record), 5);
  EXPECT_EQ(changes[0].cells.size(), 5U);
  EXPECT_EQ(changes[0].withoutFigures, (std::vector<std::size_t>{2}));
  EXPECT_EQ(changes[1].cells.size(), 6U);
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
  Record record = simulateTurns({.dwell = 2, .cells = 2, .blocks = 2}, {-0.5}, random);
  std::erase_if(record.visits, [](const Visit& visit) { return visit.cell != visit.block; });
  EXPECT_EQ(bisectionStatusOf(changesIn(record, 1)), kUndecidedStatus);
}

Changes changesBetween(const Record& older, const Record& newer) {
  return changesOf({{&older, 0}, {&newer, 0}}, 5).front();
}

TEST(ChangesOfTwoSittings, TakeASlowerMachineForNoSlowerDriver) {
  std::mt19937_64 random(31);
  Record older = simulate({.dwell = 1e6, .cells = 6}, random).record;
  Record newer = older;
  stretch(newer, 0, 1.25);
  EXPECT_EQ(bisectionStatusOf(changesBetween(older, newer)), kSomethingSlower);
  older.speeds = {1e9, 1.01e9};
  newer.speeds = {0.8e9, 0.81e9};
  const Changes changes = changesBetween(older, newer);
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
    Record older = both;
    Record newer = both;
    older.visits.clear();
    newer.visits.clear();
    for (Visit visit : both.visits) {
      const bool isNew = visit.block % 2 == 1;
      visit.block /= 2;
      for (Frame& frame : visit.frames[0]) {
        frame.wall = isNew && visit.block / 16 == 2 ? frame.wall * 3 / 2 : frame.wall;
      }
      (isNew ? newer : older).visits.push_back(visit);
    }
    alarms += bisectionStatusOf(changesBetween(older, newer)) == kSomethingSlower ? 1 : 0;
    // Where the core's speed is known, it accounts for the stretch.
    older.speeds.assign(64, 1e9);
    newer.speeds = older.speeds;
    std::fill_n(newer.speeds.begin() + 32, 16, 1e9 / 1.5);
    EXPECT_GT(changesBetween(older, newer).moved, 8);
  }
  EXPECT_LE(alarms, 1);
}

}  // namespace
}  // namespace survey
