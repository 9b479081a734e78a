#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

#include "survey/data/RecordJson.h"
#include "survey/judge/Advice.h"
#include "survey/judge/Changes.h"
#include "survey/judge/Explanation.h"
#include "survey/tell/Files.h"
#include "survey/tell/ResultParts.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Soundness.h"

namespace survey {

NLOHMANN_JSON_SERIALIZE_ENUM(Verdict, {{Verdict::kUndecided, "undecided"},
                                       {Verdict::kSame, "same"},
                                       {Verdict::kSlower, "slower"},
                                       {Verdict::kFaster, "faster"}})

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 2;

Json intervalJson(const Interval& interval) {  // JSON has no infinity
  const auto number = [](double value) { return std::isfinite(value) ? Json(value) : Json(); };
  return {{"low", number(interval.low)},
          {"middle", number(interval.middle)},
          {"high", number(interval.high)}};
}

Json figuresJson(const Figures& all, const SideView& side) {
  Json figures = Json::array();
  for (const Group& group : all.groups) {
    for (const CellFigure& figure : group.ranking) {
      figures.push_back(
          {{"name", nameOf(side.cell(figure.cell))},
           {"sent", group.sent},
           {"blocks", figure.blocks},
           {"visits", figure.visits},
           {"rate", intervalJson(figure.rate)},
           {"typical_rate", intervalJson(figure.typical)},
           {"slow_factor", figure.slowFactor ? intervalJson(*figure.slowFactor) : Json()},
           {"ratio", intervalJson(figure.ratio)},
           {"leads", figure.leads},
           {"precise", figure.precise},
           {"nanoseconds_per_call", figure.nanosecondsPerCall},
           {"gpu_share", figure.gpuShare ? Json(*figure.gpuShare) : Json()}});
    }
  }
  return figures;
}

Json costsJson(const Figures& figures, const SideView& side) {
  Json costs = Json::array();
  for (const AttributeCost& cost : figures.costs) {
    costs.push_back({{"name", nameOf(side.cell(cost.cell))},
                     {"beside", nameOf(side.cell(cost.beside))},
                     {"nanoseconds_per_vertex", intervalJson(cost.perVertex)},
                     {"times", intervalJson(cost.times)}});
  }
  return costs;
}

/// The cells that have no figure, and why.
Json withoutJson(const SideView& side) {
  Json without = Json::array();
  const std::vector<Visit>& visits = side.record->visits;
  for (std::size_t cell = 0; cell < side.record->cells.size(); ++cell) {
    if (std::none_of(visits.begin(), visits.end(), [&](const Visit& visit) {
          return visit.cell == cell && !side.frames(visit).empty();
        })) {
      without.push_back(
          {{"name", nameOf(side.cell(cell))}, {"remark", remarkOn(side, cell, false)}});
    }
  }
  return without;
}

/// Which of the processor's states the figures are of.
Json statesJson(const States& states) {
  return {{"shown", !states.areTwo                     ? "only"
                    : states.shown == CoreState::kFast ? "fast"
                                                       : "slow"},
          {"fast_share", states.fastShare}};
}

Json changeJson(const std::string& name, const Changes& changes, const Change& change) {
  return {{"name", name},
          {"ratio", intervalJson(change.ratio)},
          {changes.isInTurns() ? "blocks" : "sittings", change.units},
          {"verdict", nlohmann::json(change.verdict)}};
}

Json functionJson(const FunctionChange& function) {
  return {{"function", function.function},
          {"file", function.file},
          {"base", function.base},
          {"new", function.newer},
          {"change", intervalJson(function.change)},
          {"base_size", function.baseSize},
          {"new_size", function.newSize},
          {"changed", function.changed}};
}

/// Times in nanoseconds a vertex.
Json explanationsJson(const Changes& changes) {
  Json explanations = Json::array();
  if (!changes.isInTurns()) {
    return explanations;
  }
  for (const Explanation& explanation : explanationsOf(changes.base, changes.newer)) {
    Json functions = Json::array();
    for (const FunctionChange& function : explanation.functions) {
      functions.push_back(functionJson(function));
    }
    explanations.push_back({{"name", nameOf(changes.base.cell(explanation.cell))},
                            {"blocks", explanation.blocks},
                            {"base", explanation.base},
                            {"new", explanation.newer},
                            {"functions", functions},
                            {"outside", functionJson(explanation.outside)},
                            {"why_not", explanation.whyNot}});
  }
  return explanations;
}

Json changesJson(const Changes& changes) {
  Json cells = Json::array();
  for (const CellChange& cell : changes.cells) {
    cells.push_back(changeJson(nameOf(changes.base.cell(cell.base)), changes, cell.change));
    cells.back()["typical_ratio"] = cell.typical ? intervalJson(*cell.typical) : Json();
  }
  const auto names = [&](const std::vector<std::size_t>& indices) {
    Json list = Json::array();
    for (const std::size_t cell : indices) {
      list.push_back(nameOf(changes.newer.cell(cell)));
    }
    return list;
  };
  return {{"name", changes.newer.name()},
          {"overall", changeJson("overall", changes, changes.overall)},
          {"cells", cells},
          {"fails", names(changes.newFails)},
          {"dies", names(changes.newDies)},
          {"explanations", explanationsJson(changes)},
          {"status", bisectionStatusOf(changes)}};
}

/// Times in nanoseconds, the best method first.
Json adviceJson(const Question& question, const SideView& side) {
  Json methods = Json::array();
  for (const MethodAdvice& advice : adviceFor(question, side)) {
    methods.push_back({{"method", advice.method},
                       {"blocks", advice.blocks},
                       {"time", intervalJson(advice.time)},
                       {"times", intervalJson(advice.times)},
                       {"leads", advice.leads},
                       {"per_model", intervalJson(advice.perModel)},
                       {"per_strip", intervalJson(advice.perStrip)},
                       {"per_vertex", intervalJson(advice.perVertex)},
                       {"miss", advice.miss}});
  }
  return methods;
}

/// For eyes what they look for, on one line what is long. A driver's strings need not be UTF-8.
std::string fileOf(const Json& context, const Json& benchmarks, const Json& own) {
  const auto text = [](const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
  };
  return fmt::format("{{\n\"context\": {},\n\"benchmarks\": {},\n\"sorvanta\": {}\n}}\n",
                     text(context, 1), text(benchmarks, 1), text(own, -1));
}

/// What our part of the file says of the record, for programs that do not compute it again.
void addAnswers(Json& own, const Result& result) {
  const std::vector<SideView> sides = sidesOf(result);
  own["sides"] = Json::array();
  for (const SideView& side : sides) {
    const Figures figures = figuresOf(side);
    own["sides"].push_back({{"name", side.name()},
                            {"states", statesJson(figures.states)},
                            {"figures", figuresJson(figures, side)},
                            {"costs", costsJson(figures, side)},
                            {"without", withoutJson(side)}});
  }
  if (result.question) {
    own["question"] = nlohmann::json(*result.question);
    own["advice"] = adviceJson(*result.question, sides.front());
  }
  if (result.isComparison()) {
    const std::vector<Changes> changes = changesOf(sides, result.threshold);
    own["threshold"] = result.threshold;
    own["status"] = bisectionStatusOf(changes);
    own["changes"] = Json::array();
    for (const Changes& ofSide : changes) {
      own["changes"].push_back(changesJson(ofSide));
    }
  }
}

class WrongFormat : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

Result resultIn(const nlohmann::json& own) {
  switch (const int format = own.at("format")) {
    case 1:
      return resultOfFormatOne(own);
    case kFormat:
      return {own.at("sittings").get<std::vector<Record>>(), own.value("threshold", 0.0),
              own.contains("question") ? std::optional(own.at("question").get<Question>())
                                       : std::nullopt};
    default:
      throw WrongFormat(
          fmt::format("this result is of format {}, and this version reads formats 1 and {} only",
                      format, kFormat));
  }
}

}  // namespace

std::string resultJson(const Result& result) {
  Json benchmarks = Json::array();
  const std::vector<SideView> sides = sidesOf(result);
  const std::vector<std::string> labels = labelsOf(sides);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    addBenchmarks(benchmarks, sides[i], result.isComparison() ? labels[i] + '/' : "");
  }
  Json own = {
      {"format", kFormat}, {"frameColumns", kFrameColumns}, {"frameTime", "wall_ns - wait_ns"}};
  addAnswers(own, result);
  own["sittings"] = nlohmann::json(result.sittings);
  return fileOf(contextOf(sidesOf(result).front()), benchmarks, own);
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
    Result result = resultIn(json.at("sorvanta"));
    requireSound(result);
    return result;
  } catch (const WrongFormat&) {
    throw;
  } catch (const std::exception& error) {
    throw std::runtime_error(fmt::format("this result is damaged: {}", error.what()));
  }
}

}  // namespace survey
