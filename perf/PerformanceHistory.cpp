#include "perf/PerformanceHistory.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "perf/Clock.h"

void PerformanceHistory::addSample(float sample) {
  sampleQueue.push_back(sample);
  if (static_cast<int>(sampleQueue.size()) > queueSize) {
    sampleQueue.pop_front();
  }
  lastSample = sample;
  lastSampleTime = getTime();
  ++sampleCount;
}

void PerformanceHistory::clearSamples() {
  sampleQueue.clear();
  sampleCount = 0;
}

float PerformanceHistory::meanDiscardingHighLow(int n) const {
  if (sampleQueue.empty()) {
    return 0;
  }
  std::vector<float> sorted(sampleQueue.begin(), sampleQueue.end());
  std::sort(sorted.begin(), sorted.end());
  const auto size = static_cast<std::ptrdiff_t>(sorted.size());
  const std::ptrdiff_t discarded = n > 0 && size > 2 * std::ptrdiff_t{n} ? n : 0;
  const float total = std::accumulate(sorted.begin() + discarded, sorted.end() - discarded, 0.0F);
  return total / static_cast<float>(size - 2 * discarded);
}
