#include "survey/measure/Visits.h"

#include <algorithm>

namespace survey {
namespace {

constexpr double kDisturbedShare = 0.02;
constexpr int kWarmUps = 2;
constexpr std::size_t kFrames = 4;
/// Where a machine's speed jumps between the frames of a pair, that pair is lost: short frames and
/// many pairs lose few.
constexpr std::size_t kPairs = 12;
constexpr int kWarmUpPairs = 3;
constexpr std::size_t kFewestFrames = 2;
constexpr double kNanosecondsPerMillisecond = 1e6;
constexpr double kMicrosecondsPerMillisecond = 1e3;

/// What was drawn in a visit, and whether that is enough.
class Tally {
 public:
  Tally(std::size_t wanted, double leastWall) : wanted_(wanted), leastWall_(leastWall) {}

  void add(double wall, bool disturbed) {
    ++all_.count;
    all_.wall += wall;
    undisturbed_.count += disturbed ? 0 : 1;
    undisturbed_.wall += disturbed ? 0 : wall;
  }
  bool isEnough() const {
    return isEnough(undisturbed_.count, undisturbed_.wall) ||
           isEnough(all_.count / 2, all_.wall / 2);
  }

 private:
  struct Frames {
    std::size_t count = 0;
    double wall = 0;
  };

  bool isEnough(std::size_t count, double wall) const {
    return count >= wanted_ ||
           (count >= kFewestFrames && wall >= static_cast<double>(wanted_) * leastWall_);
  }

  std::size_t wanted_;
  double leastWall_;
  Frames all_;
  Frames undisturbed_;
};

Frame frameOf(WorkerProcess& worker, double frame, std::chrono::milliseconds patience) {
  auto drawn = worker.ask<Frame>(
      DrawFrame{static_cast<std::int64_t>(frame * kMicrosecondsPerMillisecond)}, patience);
  if (drawn.primitives == 0 || drawn.wall <= 0) {
    worker.fault("drew a frame of nothing");
  }
  drawn.disturbed = isDisturbed(drawn);
  return drawn;
}

}  // namespace

bool isDisturbed(const Frame& frame) {
  return static_cast<double>(std::max(frame.wait, frame.steal.value_or(0))) >
         kDisturbedShare * static_cast<double>(frame.wall);
}

bool isWorthAnotherVisit(const CellRecord& cell) {
  return !cell.isGivenUp() && (!cell.answer || cell.answer->hasFigure());
}

std::vector<Frame> framesOf(WorkerProcess& worker, double frame,
                            std::chrono::milliseconds patience) {
  const double leastWall = frame * kNanosecondsPerMillisecond;
  double warm = 0;
  for (int i = 0; i < kWarmUps && warm < kWarmUps * leastWall; ++i) {
    warm += static_cast<double>(frameOf(worker, frame, patience).wall);
  }
  std::vector<Frame> frames;
  for (Tally tally(kFrames, leastWall); !tally.isEnough();) {
    frames.push_back(frameOf(worker, frame, patience));
    tally.add(static_cast<double>(frames.back().wall), frames.back().disturbed);
  }
  return frames;
}

FramesInTurns framesInTurns(const std::array<WorkerProcess*, 2>& workers, double frame,
                            std::chrono::milliseconds patience, std::size_t& asked) {
  FramesInTurns frames;
  std::size_t first = 0;
  const auto drawPair = [&] {
    for (const std::size_t side : {first, 1 - first}) {
      asked = side;
      frames[side].push_back(frameOf(*workers[side], frame, patience));
    }
    first = 1 - first;
  };
  const auto wallOfPair = [&] {
    return static_cast<double>(frames[0].back().wall + frames[1].back().wall);
  };
  const double leastWall = 2 * frame * kNanosecondsPerMillisecond;
  drawPair();  // in which much is made ready: its time says nothing of the pairs to come
  double warm = 0;
  for (int i = 0; i < kWarmUpPairs && warm < kWarmUpPairs * leastWall; ++i) {
    drawPair();
    warm += wallOfPair();
  }
  frames = {};
  first = 0;
  for (Tally tally(kPairs, leastWall); !tally.isEnough();) {
    drawPair();
    tally.add(wallOfPair(), frames[0].back().disturbed || frames[1].back().disturbed);
  }
  return frames;
}

}  // namespace survey
