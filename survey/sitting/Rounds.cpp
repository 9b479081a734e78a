#include "survey/sitting/Rounds.h"

#include <algorithm>

namespace survey {
namespace {

constexpr double kDisturbedShare = 0.02;
constexpr std::size_t kFewestRounds = 2;
constexpr double kNanosecondsPerMillisecond = 1e6;
constexpr double kMicrosecondsPerMillisecond = 1e3;

/// How many rounds a visit has.
struct Length {
  int first;  ///< in which much is made ready: their time says nothing of those to come
  int warmUps;
  std::size_t rounds;
};
constexpr Length kAlone{0, 2, 4};
/// Where a machine's speed jumps between the frames of a round, that round is lost: short frames
/// and many rounds lose few.
constexpr Length kInTurns{1, 3, 12};

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
  struct Rounds {
    std::size_t count = 0;
    double wall = 0;
  };

  bool isEnough(std::size_t count, double wall) const {
    return count >= wanted_ ||
           (count >= kFewestRounds && wall >= static_cast<double>(wanted_) * leastWall_);
  }

  std::size_t wanted_;
  double leastWall_;
  Rounds all_;
  Rounds undisturbed_;
};

Frame frameOf(Worker& worker, double frame, std::chrono::milliseconds patience) {
  const auto leastTime =
      std::chrono::microseconds(static_cast<std::int64_t>(frame * kMicrosecondsPerMillisecond));
  Frame drawn = worker.draw(leastTime, patience);
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

std::vector<std::vector<Frame>> framesInTurns(const std::vector<Worker*>& workers, double frame,
                                              std::chrono::milliseconds patience) {
  const std::size_t count = workers.size();
  const Length& length = count == 1 ? kAlone : kInTurns;
  const double leastWall = static_cast<double>(count) * frame * kNanosecondsPerMillisecond;
  std::vector<std::vector<Frame>> frames(count);
  std::size_t begins = 0;
  double wall = 0;  // of the last round
  bool disturbed = false;
  const auto drawRound = [&] {
    wall = 0;
    disturbed = false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t side = (begins + i) % count;
      const Frame drawn = frameOf(*workers[side], frame, patience);
      wall += static_cast<double>(drawn.wall);
      disturbed = disturbed || drawn.disturbed;
      frames[side].push_back(drawn);
    }
    ++begins;
  };
  for (int i = 0; i < length.first; ++i) {
    drawRound();
  }
  double warm = 0;
  for (int i = 0; i < length.warmUps && warm < length.warmUps * leastWall; ++i) {
    drawRound();
    warm += wall;
  }
  frames.assign(count, {});
  begins = 0;
  for (Tally tally(length.rounds, leastWall); !tally.isEnough();) {
    drawRound();
    tally.add(wall, disturbed);
  }
  return frames;
}

}  // namespace survey
