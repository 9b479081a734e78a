#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "survey/statistics/Estimate.h"
#include "survey/statistics/Levels.h"
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
  const Estimate middle =
      meanOf(std::vector<Estimate>{{1, {0.9, 2}}, {2, {0.9, 2}}, {6, {0.9, 2}}});
  EXPECT_NEAR(middle.mean, 3, 1e-12);
  EXPECT_NEAR(middle.variance.value, 0.3, 1e-12);
  EXPECT_NEAR(middle.variance.freedom, 6, 1e-9);
  EXPECT_EQ(difference({2, {0, 3}}, {1, {0, 4}}).variance.freedom, 7);
}

TEST(Holm, StepsDownUntilOneIsNotSureEnough) {
  EXPECT_EQ(positives(std::vector<double>{0.01, 0.04, 0.03, 0.005}, 0.05),
            (std::vector<bool>{true, false, false, true}));
  EXPECT_EQ(positives(std::vector<double>{0.012, 0.02, 0.6, 0.016}, 0.05),
            (std::vector<bool>{true, true, false, true}));
}

TEST(TwoLevels, AreFoundWhereThereAreTwo) {
  std::mt19937_64 random(7);
  std::normal_distribution<> normal(0, 0.03);
  std::vector<double> values(400);
  std::generate(values.begin(), values.end(), [&] { return normal(random); });
  EXPECT_FALSE(twoLevels(values, 0.1));
  std::vector<double> drifting;
  for (std::size_t i = 0; i < values.size(); ++i) {
    drifting.push_back(values[i] / 3 + 0.4 * static_cast<double>(i) / 400);
  }
  EXPECT_FALSE(twoLevels(drifting, 0.1));
  for (std::size_t i = 0; i < values.size(); i += 5) {
    values[i] -= 0.6;
  }
  const auto levels = twoLevels(values, 0.1);
  ASSERT_TRUE(levels);
  EXPECT_NEAR(levels->high, 0, 0.01);
  EXPECT_NEAR(levels->low, -0.6, 0.02);
  EXPECT_NEAR(levels->shareOfHigh, 0.8, 0.01);
  EXPECT_GT(levels->probabilityOfHigh(-0.1), 0.99);
  EXPECT_LT(levels->probabilityOfHigh(-0.5), 0.01);
  values[1] = -1.5;  // a stray one is no level
  EXPECT_NEAR(twoLevels(values, 0.1).value().low, -0.6, 0.02);
  EXPECT_FALSE(twoLevels(values, 0.7));
  EXPECT_FALSE(twoLevels(std::vector<double>(20, 1.0), 0.1));
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
  std::vector<Estimate> alike(4, {0, {1, 5}, 6});
  shareVariances(alike);
  EXPECT_NEAR(alike[0].variance.value, 1, 0.3);
  EXPECT_EQ(alike[0].variance.freedom, 20);
}

}  // namespace
}  // namespace survey
