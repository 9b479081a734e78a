#include <cmath>
#include <map>

#include "survey/data/RecordJson.h"
#include "survey/statistics/Averages.h"
#include "survey/tell/ResultParts.h"

namespace survey {
namespace {

using Json = nlohmann::ordered_json;

/// The measured frames of one cell in one block.
struct Repetition {
  std::uint64_t primitives = 0;
  std::int64_t time = 0;
  std::int64_t cpu = 0;
};

std::map<std::size_t, Repetition> repetitionsOf(const SideView& side, std::size_t cell) {
  std::map<std::size_t, Repetition> repetitions;
  for (const Visit& visit : side.record->visits) {
    if (visit.cell == cell) {
      for (const Frame& frame : side.frames(visit)) {
        Repetition& repetition = repetitions[visit.block];
        repetition.primitives += frame.primitives;
        repetition.time += frame.time();
        repetition.cpu += frame.cpu;
      }
    }
  }
  return repetitions;
}

struct Times {
  double real;
  double cpu;
  double rate;
};

using Statistic = double (*)(const std::vector<double>&);

double deviation(const std::vector<double>& values) {
  const double middle = mean(values);
  double squares = 0;
  for (const double value : values) {
    squares += (value - middle) * (value - middle);
  }
  return values.size() < 2 ? 0 : std::sqrt(squares / static_cast<double>(values.size() - 1));
}

struct Aggregate {
  const char* name;
  const char* unit;
  Statistic statistic;
};

constexpr Aggregate kAggregates[] = {
    {"mean", "time", [](const std::vector<double>& values) { return mean(values); }},
    {"median", "time", [](const std::vector<double>& values) { return median(values); }},
    {"stddev", "time", deviation},
    {"cv", "percentage",
     [](const std::vector<double>& values) { return deviation(values) / mean(values); }}};

/// What all entries of a cell begin with.
Json entryOf(const std::string& name, std::size_t cell, const char* type) {
  return {{"name", name},
          {"family_index", cell},
          {"per_family_instance_index", 0},
          {"run_name", name},
          {"run_type", type}};
}

void addTimes(Json& entry, const Times& times) {
  entry["real_time"] = times.real;
  entry["cpu_time"] = times.cpu;
  entry["time_unit"] = "ns";
  entry["items_per_second"] = times.rate;
}

void addRepetitions(Json& benchmarks, const SideView& side, std::size_t cell,
                    const std::string& name) {
  const auto repetitions = repetitionsOf(side, cell);
  if (repetitions.empty()) {
    return;
  }
  std::vector<double> real;
  std::vector<double> cpu;
  std::vector<double> rates;
  for (const auto& [block, repetition] : repetitions) {
    const auto models = static_cast<double>(repetition.primitives) /
                        static_cast<double>(side.state(cell).answer->primitivesPerModel);
    const auto time = static_cast<double>(repetition.time);
    const double rate = 1e9 * static_cast<double>(repetition.primitives) / time;
    Json entry = entryOf(name, cell, "iteration");
    entry["repetitions"] = repetitions.size();
    entry["repetition_index"] = real.size();
    entry["threads"] = 1;
    entry["iterations"] = std::llround(models);
    real.push_back(time / models);
    cpu.push_back(static_cast<double>(repetition.cpu) / models);
    rates.push_back(rate);
    addTimes(entry, {real.back(), cpu.back(), rate});
    benchmarks.push_back(entry);
  }
  for (const auto& [suffix, unit, statistic] : kAggregates) {
    Json entry = entryOf(name, cell, "aggregate");
    entry["name"] = name + "_" + suffix;
    entry["repetitions"] = repetitions.size();
    entry["threads"] = 1;
    entry["aggregate_name"] = suffix;
    entry["aggregate_unit"] = unit;
    entry["iterations"] = repetitions.size();
    addTimes(entry, {statistic(real), statistic(cpu), statistic(rates)});
    benchmarks.push_back(entry);
  }
}

}  // namespace

Json contextOf(const SideView& side) {
  const Record& record = *side.record;
  const Driver& driver = side.side().driver;
  const bool scaling = !record.before.governor.empty() && record.before.governor != "performance";
  return {{"date", record.before.when},
          {"host_name", record.machine.host},
          {"executable", record.settings.commandLine},
          {"num_cpus", record.machine.processors},
          {"mhz_per_cpu", std::lround(record.before.clock)},
          {"cpu_scaling_enabled", scaling},
          {"caches", nlohmann::json(record.machine.caches)},
          {"load_avg", record.before.load},
          {"library_build_type", record.program.optimised ? "release" : "debug"},
          {"sorvanta_version", record.program.version},
          {"renderer", driver.renderer},
          {"gl_version", driver.version}};
}

void addBenchmarks(Json& benchmarks, const SideView& side, const std::string& prefix) {
  for (std::size_t cell = 0; cell < side.record->cells.size(); ++cell) {
    addRepetitions(benchmarks, side, cell, prefix + nameOf(side.cell(cell)));
  }
}

}  // namespace survey
