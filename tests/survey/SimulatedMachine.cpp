#include "tests/survey/SimulatedMachine.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

namespace survey {
namespace {

/// A core whose state jumps, as time goes on.
class Core {
 public:
  Core(const Simulation& simulated, std::mt19937_64& generator)
      : machine(simulated), random(generator), fast(random() % 2 == 0), nextJump(stay()) {}

  /// In how much of the next so many seconds it is slow.
  double slowPart(double seconds) {
    const double end = now + seconds;
    double slow = 0;
    while (nextJump < end) {
      slow += fast ? 0 : nextJump - now;
      now = nextJump;
      fast = !fast;
      nextJump = now + stay();
    }
    slow += fast ? 0 : end - now;
    now = end;
    return slow / seconds;
  }

  double yardstick() {
    constexpr double kSeconds = 0.003;
    constexpr double kScatter = 0.02;
    std::normal_distribution<> normal;
    return 40e6 * std::exp(std::log(machine.slow) * slowPart(kSeconds) + kScatter * normal(random));
  }

 private:
  double stay() { return std::exponential_distribution(1 / machine.dwell)(random); }

  const Simulation& machine;
  std::mt19937_64& random;
  bool fast;
  double now = 0;
  double nextJump;
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
  std::uniform_real_distribution<> part;
  SimulatedSurvey survey;
  for (std::size_t cell = 0; cell < machine.cells; ++cell) {
    survey.rates.push_back(20e6 + 160e6 * part(random));
    survey.slowFactors.push_back(machine.slow + (1 - machine.slow) * 0.8 * part(random));
  }
  survey.record = simulateAgain(survey, machine, 1, random);
  return survey;
}

Record simulateAgain(const SimulatedSurvey& survey, const Simulation& machine, double factor,
                     std::mt19937_64& random) {
  constexpr double kSetting = 0.045;
  constexpr double kShort = 0.015;
  constexpr double kLong = 0.07;
  constexpr std::size_t kFrames = 2;
  std::uniform_real_distribution<> part;
  std::normal_distribution<> normal;

  Record record = recordOf({""}, machine.cells);
  Core core(machine, random);
  const double ofSitting = std::log(factor) + machine.sitting * normal(random);
  std::vector<std::size_t> order(machine.cells);
  std::iota(order.begin(), order.end(), 0);
  for (std::size_t block = 0; block < machine.blocks; ++block) {
    std::vector<double> own;  // the process's
    for (const double rate : survey.rates) {
      own.push_back(std::log(rate) + ofSitting + machine.luck * normal(random));
      if (part(random) < machine.astray) {
        own.back() += (random() % 2 == 0 ? 1 : -1) * (0.1 + 0.3 * part(random));
      }
    }
    for (std::size_t pass = 0; pass < machine.passes; ++pass) {
      std::shuffle(order.begin(), order.end(), random);
      for (const std::size_t cell : order) {
        const double seconds = cell % 3 == 2 ? kLong : kShort;
        core.slowPart(kSetting);
        Visit visit{cell, block, 0, {{}}, {block}, {core.yardstick()}};
        for (std::size_t i = 0; i < kFrames; ++i) {
          const double slowness = std::log(survey.slowFactors[cell]) * core.slowPart(seconds);
          const double rate = std::exp(own[cell] + slowness + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * seconds);
          frame.wall = static_cast<std::int64_t>(seconds * 1e9);
          visit.frames[0].push_back(frame);
        }
        visit.yardstick.push_back(core.yardstick());
        record.visits.push_back(visit);
      }
    }
  }
  return record;
}

Record simulateTurns(const Simulation& machine, const std::vector<double>& effects,
                     std::mt19937_64& random) {
  constexpr double kFrame = 0.005;
  constexpr double kSetting = 0.05;
  constexpr std::size_t kRounds = 6;
  constexpr std::int64_t kStall = 20'000'000;
  std::uniform_real_distribution<> part;
  std::normal_distribution<> normal;

  const std::size_t sides = 1 + effects.size();
  std::vector<std::vector<double>> lucks(machine.cells, std::vector<double>(sides));
  for (std::vector<double>& ofCell : lucks) {
    std::generate(ofCell.begin(), ofCell.end(), [&] { return normal(random); });
  }
  std::vector<std::string> names{"base", "new"};
  for (std::size_t side = 2; side < sides; ++side) {
    names.push_back("new" + std::to_string(side));
  }
  Record record = recordOf(names, machine.cells);
  Core core(machine, random);
  for (std::size_t block = 0; block < machine.blocks; ++block) {
    for (std::size_t cell = 0; cell < machine.cells; ++cell) {
      if (cell < machine.brief && block > cell) {
        continue;
      }
      std::vector<double> logs(sides);
      Visit visit{cell, block, 0, std::vector<std::vector<Frame>>(sides), std::vector(sides, block),
                  {}};
      // Processes of some cells differ more than those of others.
      const double luck = machine.luck * (cell % 3 == 0 ? 1.5 : 0.5);
      for (std::size_t side = 0; side < sides; ++side) {
        double& own = lucks[cell][side];
        own = machine.correlation * own +
              std::sqrt(1 - machine.correlation * machine.correlation) * normal(random);
        logs[side] = std::log(100e6) + luck * own +
                     (part(random) < machine.bimodal ? std::log(1.5) : 0) +
                     (side > 0 ? std::log1p(effects[side - 1]) : 0);
        if (part(random) < machine.astray) {
          logs[side] += (random() % 2 == 0 ? 1 : -1) * (0.1 + 0.3 * part(random));
        }
      }
      core.slowPart(kSetting);
      visit.yardstick = {core.yardstick()};
      for (std::size_t round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < sides; ++i) {
          const std::size_t side = (round + i) % sides;
          const double slowness = std::log(machine.slow) * core.slowPart(kFrame);
          const double rate = std::exp(logs[side] + slowness + machine.scatter * normal(random));
          Frame frame;
          frame.primitives = static_cast<std::uint64_t>(rate * kFrame);
          frame.wall = static_cast<std::int64_t>(kFrame * 1e9) +
                       (part(random) < machine.stalls ? kStall : 0);
          visit.frames[side].push_back(frame);
        }
      }
      visit.yardstick.push_back(core.yardstick());
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
