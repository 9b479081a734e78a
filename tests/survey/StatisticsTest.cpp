#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "survey/figures/Figures.h"
#include "survey/statistics/CommonFactor.h"
#include "survey/statistics/Estimate.h"
#include "survey/statistics/Holm.h"
#include "survey/statistics/Jackknife.h"
#include "survey/statistics/Quantiles.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

TEST(Estimate, OfFewValuesIsStudents) {
  const Interval interval = intervalOf(estimateOf(std::vector<double>{1, 2, 4}));
  EXPECT_NEAR(interval.middle, 7.0 / 3, 1e-12);
  EXPECT_NEAR(interval.halfWidth(), 4.302653 * std::sqrt(7.0 / 9), 1e-5);
  EXPECT_EQ(intervalOf(estimateOf(std::vector<double>{3})).high, INFINITY);
  const Estimate between = difference({17.2, {0.5, 4}, 5}, {15.8, {0.2, 8}, 9});
  EXPECT_NEAR(between.mean, 1.4, 1e-12);
  EXPECT_NEAR(between.variance.freedom, 0.49 / (0.0625 + 0.005), 1e-9);
}

TEST(Jackknife, OfAMeanIsItsStandardError) {
  // 1 2 3 6, of which each is a group; the fifth group has no part.
  const Jackknife figure{3, 4, 4, {11.0 / 3, 10.0 / 3, 3, 2, std::nullopt}};
  const Estimate estimate = estimateOf(figure);
  EXPECT_EQ(estimate.mean, 3);
  EXPECT_NEAR(estimate.variance.value, 14.0 / 12, 1e-12);
  EXPECT_EQ(estimate.variance.freedom, 3);
  // Of a trimmed mean only the values that are not trimmed say how sure its error is.
  const Estimate trimmed = estimateOf(Jackknife{3, 4, 2, figure.without});
  EXPECT_EQ(trimmed.values, 4);
  EXPECT_EQ(trimmed.variance.freedom, 1);
  EXPECT_EQ(intervalOf(estimateOf(Jackknife{3, 2, 2, {std::nullopt, 3}})).high, INFINITY);
  // What moves two figures together counts once; what moves them apart not at all.
  const Jackknife opposed{3, 4, 4, {7.0 / 3, 8.0 / 3, 3, 4, std::nullopt}};
  EXPECT_NEAR(meanOf(std::vector{figure, figure}).variance.value, 14.0 / 12, 1e-12);
  EXPECT_NEAR(meanOf(std::vector{figure, opposed}).variance.value, 0, 1e-12);
  // One with two groups alone makes the mean unsure, as much of the scatter is its own.
  const Estimate uneven = meanOf(std::vector{figure, Jackknife{1, 2, 2, {0, 2, {}, {}, {}}}});
  EXPECT_NEAR(uneven.variance.freedom, (0.25 + 0.5) / (0.25 / 3 + 0.5 / 1), 1e-12);
}

TEST(Holm, StepsDownUntilOneIsNotSureEnough) {
  EXPECT_EQ(positives(std::vector<double>{0.01, 0.04, 0.03, 0.005}, 0.05),
            (std::vector<bool>{true, false, false, true}));
  EXPECT_EQ(positives(std::vector<double>{0.012, 0.02, 0.6, 0.016}, 0.05),
            (std::vector<bool>{true, true, false, true}));
}

TEST(CommonFactor, IsTakenOutAcrossAJump) {
  // Three cells, without noise; the machine falls to two thirds in the middle of a sighting.
  const double effects[] = {1, 2, 4};
  std::vector<Sighting> sightings;
  for (std::size_t i = 0; i < 30; ++i) {
    const std::size_t cell = (i * 7 + i / 3) % 3;
    const auto value = [&](bool slow) { return effects[cell] + (slow ? std::log(2.0 / 3) : 0.0); };
    sightings.push_back({cell, {value(i > 11), value(i > 11), value(i > 10), value(i > 10)}});
  }
  const CommonFactorFit fit = fitCommonFactor(sightings, 3);
  for (std::size_t i = 0; i < sightings.size(); ++i) {
    EXPECT_NEAR(fit.corrected[i] - fit.corrected[0],
                effects[sightings[i].cell] - effects[sightings[0].cell], 1e-9)
        << i;
  }
  EXPECT_NEAR(fit.levels.front() - fit.levels.back(), std::log(1.5), 1e-9);
}

/// What intervals are worth.
struct Worth {
  int intervals = 0;
  int hits = 0;
  std::vector<double> halfWidths;

  void add(const Interval& interval, double truth) {
    ++intervals;
    hits += interval.contains(truth) ? 1 : 0;
    halfWidths.push_back(interval.halfWidth() / interval.middle);
  }
  double coverage() const { return static_cast<double>(hits) / intervals; }
};

struct Regime {
  Simulation machine;
  int surveys;
  double ratioWidth;  ///< half of it, as the median over the cells: the processes' luck, no more
};

void PrintTo(const Regime& regime, std::ostream* out) {
  const Simulation& machine = regime.machine;
  *out << machine.blocks << " blocks of " << machine.passes << " times " << machine.cells
       << " cells, speeds that last " << machine.dwell << " s";
}

class Simulated : public testing::TestWithParam<Regime> {};
INSTANTIATE_TEST_SUITE_P(
    Machine, Simulated,
    testing::Values(Regime{{.dwell = 0.5}, 20, 0.04}, Regime{{.dwell = 2}, 20, 0.035},
                    Regime{{.dwell = 20}, 20, 0.035}, Regime{{.dwell = 1e6}, 20, 0.035},
                    Regime{{.dwell = 2, .blocks = 6}, 20, 0.065},
                    Regime{{.dwell = 2, .blocks = 4}, 20, 0.08},
                    Regime{{.dwell = 0.5, .blocks = 14, .luck = 0.05, .scatter = 0.06}, 10, 0.1},
                    Regime{{.dwell = 2, .cells = 2, .passes = 8}, 120, 0.035}));

TEST_P(Simulated, IntervalsHoldTheTruth) {
  std::mt19937_64 random(17);
  Worth ratios;
  Worth rates;
  for (int i = 0; i < GetParam().surveys; ++i) {
    const auto [record, truth] = simulate(GetParam().machine, random);
    const Figures figures = figuresOf(record);
    ASSERT_EQ(figures.groups.size(), 1U);
    const auto& ranking = figures.groups[0].ranking;
    for (const CellFigure& figure : ranking) {
      rates.add(figure.rate, truth[figure.cell]);
      if (&figure != &ranking.front()) {
        ratios.add(figure.ratio, truth[figure.cell] / truth[ranking.front().cell]);
      }
    }
  }
  // 0.95, less what so few surveys scatter by: the ratios of one survey share its best cell.
  EXPECT_GE(ratios.coverage(), 0.9);
  EXPECT_GE(rates.coverage(), 0.9);
  EXPECT_LE(median(ratios.halfWidths), GetParam().ratioWidth);
}

}  // namespace
}  // namespace survey
