#include <gtest/gtest.h>

#include "perf/PerformanceHistory.h"
#include "tests/support/FakeClock.h"

namespace {

PerformanceHistory historyOf(std::initializer_list<float> samples) {
  PerformanceHistory history;
  for (const float sample : samples) {
    history.addSample(sample);
  }
  return history;
}

TEST(PerformanceHistory, TrimsTheExtremesOnceThereAreEnoughSamples) {
  EXPECT_EQ(historyOf({}).meanDiscardingHighLow(2), 0);
  EXPECT_EQ(historyOf({1, 2, 3, 4}).meanDiscardingHighLow(2), 2.5F);
  EXPECT_EQ(historyOf({100, 3, 1, 4, 2}).meanDiscardingHighLow(2), 3);
  EXPECT_EQ(historyOf({100, 3, 1, 4, 2}).mean(), 22);
  EXPECT_EQ(historyOf({5, 7}).meanDiscardingHighLow(-1), 6);
}

TEST(PerformanceHistory, KeepsTheLatestSamplesAndCountsAll) {
  PerformanceHistory history;
  for (int i = 0; i <= 30; ++i) {
    fakeClock.now = 1000U + static_cast<unsigned>(i);
    history.addSample(static_cast<float>(i));
  }
  EXPECT_EQ(history.getSamples().size(), 30U);
  EXPECT_EQ(history.getSamples().front(), 1);
  EXPECT_EQ(history.getSampleCount(), 31);

  history.clearSamples();
  EXPECT_EQ(history.getSampleCount(), 0);
  EXPECT_EQ(history.mean(), 0);
  EXPECT_EQ(history.getLastSample(), 30);
  EXPECT_EQ(history.getLastSampleTime(), 1030U);

  PerformanceHistory none(0);
  none.addSample(7);
  EXPECT_EQ(none.mean(), 0);
  EXPECT_EQ(none.getSampleCount(), 1);
}

}  // namespace
