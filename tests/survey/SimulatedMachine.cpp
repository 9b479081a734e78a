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

/// Cells of which all is known but frames.
Record recordOf(const std::vector<std::string>& sides, std::size_t cells) {
  Record record;
  for (std::size_t cell = 0; cell < cells; ++cell) {
    record.cells.push_back({"method" + std::to_string(cell), "triStrip", 64, ""});
  }
  CellAnswer answer;
  answer.primitivesPerModel = 8192;
  answer.callsPerModel = 64;
  for (const std::string& name : sides) {
    record.sides.push_back({name, {}});
    record.sides.back().driver.renderer = "simulated";
    record.sides.back().cells.assign(cells, {answer, {}});
  }
  return record;
}

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
  }
  survey.record = recordOf({""}, machine.cells);
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
        Visit visit{cell, block, 0, {{}}, {block}};
        for (std::size_t i = 0; i < kFrames; ++i) {
          const double rate =
              std::exp(own[cell] + speed.over(seconds) + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * seconds);
          frame.wall = static_cast<std::int64_t>(seconds * 1e9);
          visit.frames[0].push_back(frame);
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

Record simulateTurns(const Simulation& machine, const std::vector<double>& effects,
                     std::mt19937_64& random) {
  constexpr double kShort = 0.015;
  constexpr std::size_t kPairs = 4;
  std::uniform_real_distribution<> part;
  std::normal_distribution<> normal;

  const std::size_t sides = 1 + effects.size();
  std::vector<std::string> names{"base", "new"};
  for (std::size_t side = 2; side < sides; ++side) {
    names.push_back("new" + std::to_string(side));
  }
  Record record = recordOf(names, machine.cells);
  Speed speed(machine, random);
  for (std::size_t block = 0; block < machine.blocks; ++block) {
    for (std::size_t cell = 0; cell < machine.cells; ++cell) {
      if (cell < machine.brief && block > cell) {
        continue;
      }
      std::vector<double> logs(sides);
      Visit visit{cell, block, 0, std::vector<std::vector<Frame>>(sides),
                  std::vector(sides, block)};
      // Processes of some cells differ more than those of others.
      const double luck = machine.luck * (cell % 3 == 0 ? 1.5 : 0.5);
      for (std::size_t side = 0; side < sides; ++side) {
        logs[side] = std::log(100e6) + luck * normal(random) +
                     (side > 0 ? std::log1p(effects[side - 1]) : 0);
        if (part(random) < machine.astray) {
          logs[side] += (random() % 2 == 0 ? 1 : -1) * (0.1 + 0.3 * part(random));
        }
      }
      for (std::size_t pair = 0; pair < kPairs; ++pair) {
        for (std::size_t i = 0; i < sides; ++i) {
          const std::size_t side = (pair + i) % sides;
          const double rate =
              std::exp(logs[side] + speed.over(kShort) + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * kShort);
          frame.wall = static_cast<std::int64_t>(kShort * 1e9);
          visit.frames[side].push_back(frame);
        }
      }
      record.visits.push_back(std::move(visit));
    }
  }
  return record;
}

void stretch(Record& record, std::size_t side, double factor, std::optional<std::size_t> cell) {
  for (Visit& visit : record.visits) {
    for (Frame& frame : visit.frames[side]) {
      frame.wall = !cell || visit.cell == *cell
                       ? std::llround(static_cast<double>(frame.wall) * factor)
                       : frame.wall;
    }
  }
}

}  // namespace survey
