#include "survey/files/ResultJson.h"

#include <cmath>
#include <map>
#include <numeric>
#include <stdexcept>

#include <fmt/format.h>

#include "survey/figures/Figures.h"
#include "survey/record/RecordJson.h"
#include "survey/statistics/Quantiles.h"

namespace survey {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;

/// The measured frames of one cell in one block.
struct Repetition {
  std::uint64_t primitives = 0;
  std::int64_t wall = 0;
  std::int64_t cpu = 0;
};

std::map<std::size_t, Repetition> repetitionsOf(const Record& record, std::size_t cell) {
  std::map<std::size_t, Repetition> repetitions;
  for (const Visit& visit : record.visits) {
    if (visit.cell == cell) {
      for (const Frame& frame : visit.frames) {
        Repetition& repetition = repetitions[visit.block];
        repetition.primitives += frame.primitives;
        repetition.wall += frame.wall;
        repetition.cpu += frame.cpu;
      }
    }
  }
  return repetitions;
}

Json contextOf(const Record& record) {
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
          {"renderer", record.driver.renderer},
          {"gl_version", record.driver.version}};
}

struct Times {
  double real;
  double cpu;
  double rate;
};

using Statistic = double (*)(const std::vector<double>&);

double mean(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double deviation(const std::vector<double>& values) {
  double squares = 0;
  for (const double value : values) {
    squares += (value - mean(values)) * (value - mean(values));
  }
  return values.size() < 2 ? 0 : std::sqrt(squares / static_cast<double>(values.size() - 1));
}

struct Aggregate {
  const char* name;
  const char* unit;
  Statistic statistic;
};

constexpr Aggregate kAggregates[] = {
    {"mean", "time", mean},
    {"median", "time", [](const std::vector<double>& values) { return median(values); }},
    {"stddev", "time", deviation},
    {"cv", "percentage",
     [](const std::vector<double>& values) { return deviation(values) / mean(values); }}};

Json intervalJson(const Interval& interval) {  // JSON has no infinity
  const auto number = [](double value) { return std::isfinite(value) ? Json(value) : Json(); };
  return {{"low", number(interval.low)},
          {"middle", number(interval.middle)},
          {"high", number(interval.high)}};
}

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

void addRepetitions(Json& benchmarks, const Record& record, std::size_t cell) {
  const std::string name = nameOf(record.cells[cell].cell);
  const auto repetitions = repetitionsOf(record, cell);
  std::vector<double> real;
  std::vector<double> cpu;
  std::vector<double> rates;
  for (const auto& [block, repetition] : repetitions) {
    const auto models = static_cast<double>(repetition.primitives) /
                        static_cast<double>(record.cells[cell].answer->primitivesPerModel);
    const auto wall = static_cast<double>(repetition.wall);
    const double rate = 1e9 * static_cast<double>(repetition.primitives) / wall;
    Json entry = entryOf(name, cell, "iteration");
    entry["repetitions"] = repetitions.size();
    entry["repetition_index"] = real.size();
    entry["threads"] = 1;
    entry["iterations"] = std::llround(models);
    real.push_back(wall / models);
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

Json figuresJson(const Record& record) {
  Json figures = Json::array();
  for (const Group& group : figuresOf(record).groups) {
    for (const CellFigure& figure : group.ranking) {
      figures.push_back({{"name", nameOf(record.cells[figure.cell].cell)},
                         {"sent", group.sent},
                         {"blocks", figure.blocks},
                         {"rate", intervalJson(figure.rate)},
                         {"ratio", intervalJson(figure.ratio)},
                         {"leads", figure.leads},
                         {"precise", figure.precise},
                         {"nanoseconds_per_call", figure.nanosecondsPerCall},
                         {"gpu_share", figure.gpuShare ? Json(*figure.gpuShare) : Json()}});
    }
  }
  return figures;
}

}  // namespace

std::string resultJson(const Record& record) {
  Json benchmarks = Json::array();
  std::vector<bool> measured(record.cells.size(), false);
  for (const Visit& visit : record.visits) {
    measured[visit.cell] = true;
  }
  Json without = Json::array();
  for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
    if (measured[cell]) {
      addRepetitions(benchmarks, record, cell);
    } else {
      without.push_back(
          {{"name", nameOf(record.cells[cell].cell)}, {"remark", remarkOn(record, cell, false)}});
    }
  }
  const Json own = {{"format", kFormat},
                    {"figures", figuresJson(record)},
                    {"without", without},
                    {"record", nlohmann::json(record)}};
  // For eyes what they look for, on one line what is long. A driver's strings need not be UTF-8.
  const auto text = [](const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
  };
  return fmt::format("{{\n\"context\": {},\n\"benchmarks\": {},\n\"sorvanta\": {}\n}}\n",
                     text(contextOf(record), 1), text(benchmarks, 1), text(own, -1));
}

Record recordOf(std::string_view text) {
  const auto json = nlohmann::json::parse(text, nullptr, false);
  if (json.is_discarded()) {
    throw std::runtime_error("this is no JSON");
  }
  if (!json.is_object() || !json.contains("sorvanta")) {
    throw std::runtime_error("this is no result of sorvanta-survey");
  }
  try {
    const auto& own = json.at("sorvanta");
    const int format = own.at("format");
    if (format != kFormat) {
      throw std::runtime_error(fmt::format(
          "this result is of format {}, and this version reads format {} only", format, kFormat));
    }
    return own.at("record").get<Record>();
  } catch (const nlohmann::json::exception& error) {
    throw std::runtime_error(fmt::format("this result is damaged: {}", error.what()));
  }
}

}  // namespace survey
