#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "survey/statistics/CommonFactor.h"
#include "survey/statistics/Estimate.h"
#include "survey/statistics/Jackknife.h"
#include "survey/statistics/SharedVariance.h"
#include "survey/statistics/Significance.h"
#include "survey/statistics/TrimmedMean.h"

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

}  // namespace
}  // namespace survey
