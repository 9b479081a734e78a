/// The most recent per-frame samples and their means.
#pragma once

#include <cstdint>
#include <deque>

/// Samples are rates in millions of primitives per second, but nothing here depends on that.
class PerformanceHistory {
 public:
  static constexpr int kDefaultQueueSize = 30;

  PerformanceHistory() = default;
  /// Keeps the last `size` samples.
  explicit PerformanceHistory(int size) : queueSize(size) {}

  /// Adds it with the time of now, and drops the oldest sample when there are more than are kept.
  void addSample(float sample);
  /// Forgets all samples; the last sample and its time stay readable.
  void clearSamples();

  /// The kept samples, oldest first.
  std::deque<float> getSamples() const { return sampleQueue; }
  /// Samples added since the last clear, those included that were dropped again.
  int getSampleCount() const { return sampleCount; }
  int getQueueSize() const { return queueSize; }
  /// When the last sample was added, in microseconds as getTime gives them; 0 before the first.
  std::uint64_t getLastSampleTime() const { return lastSampleTime; }
  float getLastSample() const { return lastSample; }

  /// The mean of the kept samples; 0 without any.
  float mean() const { return meanDiscardingHighLow(0); }
  /// The mean without the `n` highest and the `n` lowest samples, or of all of them when there are
  /// 2n or fewer; 0 without any. A negative `n` counts as 0.
  float meanDiscardingHighLow(int n) const;

 private:
  int queueSize = kDefaultQueueSize;
  int sampleCount = 0;
  std::deque<float> sampleQueue;
  std::uint64_t lastSampleTime = 0;
  float lastSample = 0;
};
