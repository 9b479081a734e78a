#include "survey/measure/Visits.h"

#include <algorithm>

namespace survey {
namespace {

constexpr double kDisturbedShare = 0.02;
constexpr int kWarmUps = 2;
constexpr std::size_t kFrames = 4;
constexpr std::size_t kFewestFrames = 2;
constexpr double kNanosecondsPerMillisecond = 1e6;
constexpr double kMicrosecondsPerMillisecond = 1e3;

}  // namespace

bool isDisturbed(const Frame& frame) {
  return static_cast<double>(std::max(frame.wait, frame.steal.value_or(0))) >
         kDisturbedShare * static_cast<double>(frame.wall);
}

std::vector<Frame> framesOf(WorkerProcess& worker, double frame,
                            std::chrono::milliseconds patience) {
  const DrawFrame request{static_cast<std::int64_t>(frame * kMicrosecondsPerMillisecond)};
  const double leastWall = frame * kNanosecondsPerMillisecond;

  double warm = 0;
  for (int i = 0; i < kWarmUps && warm < kWarmUps * leastWall; ++i) {
    warm += static_cast<double>(worker.ask<Frame>(request, patience).wall);
  }

  std::vector<Frame> frames;
  std::size_t undisturbed = 0;
  double measured = 0;
  const auto enough = [&](std::size_t count, double wall) {
    return count >= kFrames || (count >= kFewestFrames && wall >= kFrames * leastWall);
  };
  double wall = 0;
  while (!enough(undisturbed, measured) && !enough(frames.size() / 2, wall / 2)) {
    auto drawn = worker.ask<Frame>(request, patience);
    if (drawn.primitives == 0 || drawn.wall <= 0) {
      throw WorkerFault("drew a frame of nothing");
    }
    drawn.disturbed = isDisturbed(drawn);
    const auto time = static_cast<double>(drawn.wall);
    wall += time;
    measured += drawn.disturbed ? 0 : time;
    undisturbed += drawn.disturbed ? 0 : 1;
    frames.push_back(drawn);
  }
  return frames;
}

}  // namespace survey
