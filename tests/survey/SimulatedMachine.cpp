#include "tests/survey/SimulatedMachine.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace survey {
namespace {

/// A speed that jumps, as time goes on.
class Speed {
 public:
  Speed(const Simulation& simulated, std::mt19937_64& generator)
      : machine(simulated), random(generator), fast(random() % 2 == 0), nextJump(stay()) {}

  /// The mean of its logarithm over the next so many seconds.
  double over(double seconds) {
    const double end = now + seconds;
    double sum = 0;
    while (nextJump < end) {
      sum += (nextJump - now) * level();
      now = nextJump;
      fast = !fast;
      nextJump = now + stay();
    }
    sum += (end - now) * level();
    now = end;
    total += sum;
    return sum / seconds;
  }
  double meanSoFar() const { return total / now; }

 private:
  double level() const { return fast ? 0 : std::log(machine.slow); }
  double stay() { return std::exponential_distribution(1 / machine.dwell)(random); }

  const Simulation& machine;
  std::mt19937_64& random;
  bool fast;
  double now = 0;
  double nextJump;
  double total = 0;
};

}  // namespace

SimulatedSurvey simulate(const Simulation& machine, std::mt19937_64& random) {
  constexpr double kSetting = 0.045;
  constexpr double kShort = 0.015;
  constexpr double kLong = 0.07;
  constexpr std::size_t kFrames = 4;
  std::uniform_real_distribution<> part;
  std::normal_distribution<> normal;

  SimulatedSurvey survey;
  std::vector<double> logs;
  for (std::size_t cell = 0; cell < machine.cells; ++cell) {
    logs.push_back(std::log(20e6 + 160e6 * part(random)));
    survey.record.cells.push_back(
        {{"method" + std::to_string(cell), "triStrip", 64, ""}, CellAnswer{}, {}});
    survey.record.cells.back().answer->primitivesPerModel = 8192;
    survey.record.cells.back().answer->callsPerModel = 64;
  }
  Speed speed(machine, random);
  std::vector<std::size_t> order(machine.cells);
  for (std::size_t i = 0; i < machine.cells; ++i) {
    order[i] = i;
  }
  for (std::size_t block = 0; block < machine.blocks; ++block) {
    std::vector<double> own;  // the process's
    for (const double log : logs) {
      own.push_back(log + machine.luck * normal(random));
      if (part(random) < machine.astray) {
        own.back() += (random() % 2 == 0 ? 1 : -1) * (0.1 + 0.3 * part(random));
      }
    }
    for (std::size_t pass = 0; pass < machine.passes; ++pass) {
      std::shuffle(order.begin(), order.end(), random);
      for (const std::size_t cell : order) {
        const double seconds = cell % 3 == 2 ? kLong : kShort;
        speed.over(kSetting);
        Visit visit{cell, block, block, 0, {}};
        for (std::size_t i = 0; i < kFrames; ++i) {
          const double rate =
              std::exp(own[cell] + speed.over(seconds) + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * seconds);
          frame.wall = static_cast<std::int64_t>(seconds * 1e9);
          visit.frames.push_back(frame);
        }
        survey.record.visits.push_back(visit);
      }
    }
  }
  for (const double log : logs) {
    survey.rates.push_back(std::exp(log + speed.meanSoFar()));
  }
  return survey;
}

Comparison simulateTurns(const Simulation& machine, double effect, std::mt19937_64& random) {
  constexpr double kShort = 0.015;
  constexpr std::size_t kPairs = 4;
  std::uniform_real_distribution<> part;
  std::normal_distribution<> normal;

  Comparison comparison{true, 0, {"base", {}}, {"new", {}}};
  Record* const records[] = {&comparison.base.record, &comparison.newer.record};
  for (Record* const record : records) {
    record->driver.renderer = "simulated";
    for (std::size_t cell = 0; cell < machine.cells; ++cell) {
      record->cells.push_back(
          {{"method" + std::to_string(cell), "triStrip", 64, ""}, CellAnswer{}, {}});
    }
  }
  Speed speed(machine, random);
  for (std::size_t block = 0; block < machine.blocks; ++block) {
    for (std::size_t cell = 0; cell < machine.cells; ++cell) {
      if (cell < machine.brief && block > cell) {
        continue;
      }
      double logs[2];
      Visit visits[] = {{cell, block, 0, 0, {}}, {cell, block, 1, 0, {}}};
      // Processes of some cells differ more than those of others.
      const double luck = machine.luck * (cell % 3 == 0 ? 1.5 : 0.5);
      for (const std::size_t side : {0, 1}) {
        logs[side] = std::log(100e6) + luck * normal(random) + (side == 1 ? std::log1p(effect) : 0);
        if (part(random) < machine.astray) {
          logs[side] += (random() % 2 == 0 ? 1 : -1) * (0.1 + 0.3 * part(random));
        }
      }
      for (std::size_t pair = 0; pair < kPairs; ++pair) {
        for (const std::size_t side : {pair % 2, 1 - pair % 2}) {
          const double rate =
              std::exp(logs[side] + speed.over(kShort) + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * kShort);
          frame.wall = static_cast<std::int64_t>(kShort * 1e9);
          visits[side].frames.push_back(frame);
        }
      }
      for (const std::size_t side : {0, 1}) {
        records[side]->visits.push_back(visits[side]);
      }
    }
  }
  return comparison;
}

}  // namespace survey
