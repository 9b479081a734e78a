// The history of figures, and the clock.
#include <chrono>

#include <gtest/gtest.h>

#include "perf/Clock.h"
#include "perf/PerformanceHistory.h"

namespace {

TEST(PerformanceHistory, TrimsTheExtremesAndKeepsTheLatestSamples) {
  PerformanceHistory history;
  EXPECT_EQ(history.meanDiscardingHighLow(2), 0);
  const std::pair<float, float> samples[] = {
      {100, 100}, {3, 51.5F}, {1, 104.0F / 3}, {4, 27}, {2, 3}};
  for (const auto& [sample, trimmedMean] : samples) {
    history.addSample(sample);
    EXPECT_EQ(history.meanDiscardingHighLow(2), trimmedMean);
  }
  EXPECT_EQ(history.meanDiscardingHighLow(-1), 22);
  for (int sample = 6; sample <= 31; ++sample) {
    history.addSample(static_cast<float>(sample));
  }
  EXPECT_EQ(history.getSamples().size(), 30U);
  EXPECT_EQ(history.getSamples().front(), 3);
  EXPECT_EQ(history.getSampleCount(), 31);
  const std::uint64_t added = history.getLastSampleTime();
  history.clearSamples();
  EXPECT_EQ(history.getSampleCount(), 0);
  EXPECT_EQ(history.mean(), 0);
  EXPECT_EQ(history.getLastSample(), 31);
  EXPECT_EQ(history.getLastSampleTime(), added);
  PerformanceHistory small(1);
  small.addSample(1);
  small.addSample(2);
  EXPECT_EQ(small.mean(), 2);
}

TEST(Clock, CountsMicrosecondsOfTheDayAndStampsSamples) {
  const auto now = [] {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count());
  };
  PerformanceHistory history;
  const std::uint64_t before = now();
  const std::uint64_t time = getTime();
  history.addSample(1);
  EXPECT_TRUE(before <= time && time <= history.getLastSampleTime());
  EXPECT_LE(history.getLastSampleTime(), now());
}

}  // namespace
