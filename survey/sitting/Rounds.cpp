#include "survey/sitting/Rounds.h"

#include <algorithm>

namespace survey {
namespace {

constexpr double kMostWaiting = 0.8;
constexpr double kMostStolen = 0.02;
constexpr double kNanosecondsPerMillisecond = 1e6;
constexpr double kMicrosecondsPerMillisecond = 1e3;

/// How many rounds a visit has.
struct Length {
  int first;  ///< in which much is made ready: their time says nothing of those to come
  int warmUps;
  std::size_t rounds;
};
constexpr Length kAlone{0, 1, 2};
/// Most of what visits differ by is the processes' luck, so that more rounds would tell little.
constexpr Length kInTurns{1, 1, 5};

/// What was drawn in a visit, and whether that is enough.
class Tally {
 public:
  Tally(std::size_t workers, std::size_t wanted, double leastTime)
      : workers_(workers), wanted_(wanted), leastTime_(leastTime) {}

  void add(double time, bool disturbed) {
    ++all_.count;
    all_.time += time;
    undisturbed_.count += disturbed ? 0 : 1;
    undisturbed_.time += disturbed ? 0 : time;
  }
  bool isEnough() const {
    return all_.count % workers_ == 0 && (isEnough(undisturbed_.count, undisturbed_.time) ||
                                          isEnough(all_.count / 2, all_.time / 2));
  }

 private:
  struct Rounds {
    std::size_t count = 0;
    double time = 0;
  };

  bool isEnough(std::size_t count, double time) const {
    return count >= wanted_ ||
           (count >= workers_ && time >= static_cast<double>(wanted_) * leastTime_);
  }

  std::size_t workers_;
  std::size_t wanted_;
  double leastTime_;
  Rounds all_;
  Rounds undisturbed_;
};

Frame frameOf(Worker& worker, double frame, std::chrono::milliseconds patience) {
  const auto leastTime =
      std::chrono::microseconds(static_cast<std::int64_t>(frame * kMicrosecondsPerMillisecond));
  Frame drawn = worker.draw(leastTime, patience);
  if (drawn.primitives == 0 || drawn.wall <= 0 || drawn.time() <= 0) {
    worker.fault("drew a frame of nothing");
  }
  drawn.disturbed = isDisturbed(drawn);
  return drawn;
}

}  // namespace

bool isDisturbed(const Frame& frame) {
  const auto wall = static_cast<double>(frame.wall);
  return static_cast<double>(frame.wait) > kMostWaiting * wall ||
         static_cast<double>(frame.steal.value_or(0)) > kMostStolen * wall;
}

std::vector<std::vector<Frame>> framesInTurns(const std::vector<Worker*>& workers, double frame,
                                              std::chrono::milliseconds patience,
                                              std::chrono::steady_clock::time_point deadline) {
  const std::size_t count = workers.size();
  const Length& length = count == 1 ? kAlone : kInTurns;
  const double leastTime = static_cast<double>(count) * frame * kNanosecondsPerMillisecond;
  std::vector<std::vector<Frame>> frames(count);
  std::size_t begins = 0;
  double time = 0;  // of the last round
  bool disturbed = false;
  const auto isInTime = [&] { return std::chrono::steady_clock::now() < deadline; };
  const auto drawRound = [&] {
    time = 0;
    disturbed = false;
    for (std::size_t i = 0; i < count && isInTime(); ++i) {
      const std::size_t side = (begins + i) % count;
      const Frame drawn = frameOf(*workers[side], frame, patience);
      time += static_cast<double>(drawn.time());
      disturbed = disturbed || drawn.disturbed;
      frames[side].push_back(drawn);
    }
    ++begins;
  };
  for (int i = 0; i < length.first && isInTime(); ++i) {
    drawRound();
  }
  double warm = 0;
  for (int i = 0; i < length.warmUps && warm < length.warmUps * leastTime && isInTime(); ++i) {
    drawRound();
    warm += time;
  }
  frames.assign(count, {});
  begins = 0;
  for (Tally tally(count, length.rounds, leastTime); !tally.isEnough() && isInTime();) {
    drawRound();
    tally.add(time, disturbed);
  }
  // Whole turns of whole rounds.
  std::size_t rounds = begins;
  for (const std::vector<Frame>& ofWorker : frames) {
    rounds = std::min(rounds, ofWorker.size());
  }
  for (std::vector<Frame>& ofWorker : frames) {
    ofWorker.resize(rounds - rounds % count);
  }
  return frames;
}

}  // namespace survey
