#include "survey/files/ResultJson.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

#include "survey/figures/Changes.h"
#include "survey/figures/Figures.h"
#include "survey/files/Benchmarks.h"
#include "survey/record/RecordJson.h"

namespace survey {

NLOHMANN_JSON_SERIALIZE_ENUM(Verdict, {{Verdict::kUndecided, "undecided"},
                                       {Verdict::kSame, "same"},
                                       {Verdict::kSlower, "slower"},
                                       {Verdict::kFaster, "faster"}})

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;

Json intervalJson(const Interval& interval) {  // JSON has no infinity
  const auto number = [](double value) { return std::isfinite(value) ? Json(value) : Json(); };
  return {{"low", number(interval.low)},
          {"middle", number(interval.middle)},
          {"high", number(interval.high)}};
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

/// The cells that have no figure, and why.
Json withoutJson(const Record& record) {
  Json without = Json::array();
  for (std::size_t cell = 0; cell < record.cells.size(); ++cell) {
    if (std::none_of(record.visits.begin(), record.visits.end(),
                     [=](const Visit& visit) { return visit.cell == cell; })) {
      without.push_back(
          {{"name", nameOf(record.cells[cell].cell)}, {"remark", remarkOn(record, cell, false)}});
    }
  }
  return without;
}

Json changeJson(const std::string& name, const Change& change) {
  return {{"name", name},
          {"ratio", intervalJson(change.ratio)},
          {"blocks", change.blocks},
          {"verdict", nlohmann::json(change.verdict)}};
}

Json changesJson(const Comparison& comparison, const Changes& changes) {
  Json cells = Json::array();
  for (const CellChange& cell : changes.cells) {
    cells.push_back(changeJson(nameOf(comparison.base.record.cells[cell.base].cell), cell.change));
  }
  const auto namesOf = [&](const std::vector<std::size_t>& indices) {
    Json names = Json::array();
    for (const std::size_t cell : indices) {
      names.push_back(nameOf(comparison.newer.record.cells[cell].cell));
    }
    return names;
  };
  return {{"overall", changeJson("overall", changes.overall)},
          {"cells", cells},
          {"fails", namesOf(changes.newFails)},
          {"dies", namesOf(changes.newDies)},
          {"status", bisectionStatusOf(changes)}};
}

/// For eyes what they look for, on one line what is long. A driver's strings need not be UTF-8.
std::string fileOf(const Json& context, const Json& benchmarks, const Json& own) {
  const auto text = [](const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
  };
  return fmt::format("{{\n\"context\": {},\n\"benchmarks\": {},\n\"sorvanta\": {}\n}}\n",
                     text(context, 1), text(benchmarks, 1), text(own, -1));
}

Json sideJson(const Side& side) {
  return {{"name", side.name}, {"record", nlohmann::json(side.record)}};
}

Side sideOf(const nlohmann::json& json) {
  return {json.at("name").get<std::string>(), json.at("record").get<Record>()};
}

}  // namespace

std::string resultJson(const Record& record) {
  Json benchmarks = Json::array();
  addBenchmarks(benchmarks, record, "");
  return fileOf(contextOf(record), benchmarks,
                {{"format", kFormat},
                 {"figures", figuresJson(record)},
                 {"without", withoutJson(record)},
                 {"record", nlohmann::json(record)}});
}

std::string resultJson(const Comparison& comparison) {
  Json benchmarks = Json::array();
  for (const Side* const side : {&comparison.base, &comparison.newer}) {
    addBenchmarks(benchmarks, side->record, side->name + '/');
  }
  return fileOf(contextOf(comparison.base.record), benchmarks,
                {{"format", kFormat},
                 {"changes", changesJson(comparison, changesOf(comparison))},
                 {"comparison",
                  {{"inTurns", comparison.inTurns},
                   {"threshold", comparison.threshold},
                   {"base", sideJson(comparison.base)},
                   {"new", sideJson(comparison.newer)}}}});
}

Result resultOf(std::string_view text) {
  const auto json = nlohmann::json::parse(text, nullptr, false);
  if (json.is_discarded()) {
    throw std::runtime_error("this is no JSON");
  }
  if (!json.is_object() || !json.contains("sorvanta")) {
    throw std::runtime_error(json.is_object() && json.contains("benchmarks")
                                 ? "this is a result of Google Benchmark, but not of "
                                   "sorvanta-survey; compare.py compares such files"
                                 : "this is no result of sorvanta-survey");
  }
  try {
    const auto& own = json.at("sorvanta");
    const int format = own.at("format");
    if (format != kFormat) {
      throw std::runtime_error(fmt::format(
          "this result is of format {}, and this version reads format {} only", format, kFormat));
    }
    if (own.contains("record")) {
      return own.at("record").get<Record>();
    }
    const auto& comparison = own.at("comparison");
    return Comparison{comparison.at("inTurns").get<bool>(),
                      comparison.at("threshold").get<double>(), sideOf(comparison.at("base")),
                      sideOf(comparison.at("new"))};
  } catch (const nlohmann::json::exception& error) {
    throw std::runtime_error(fmt::format("this result is damaged: {}", error.what()));
  }
}

}  // namespace survey
