#include "survey/data/RecordJson.h"
#include "survey/tell/ResultParts.h"

namespace survey {
namespace {

using Json = nlohmann::json;

/// A side's record in today's words, as a sitting of its own.
Record recordOf(Json json, const std::string& name) {
  Json cells = Json::array();
  Json states = Json::array();
  for (Json& cell : json.at("cells")) {
    Json& answer = cell.at("answer");
    if (!answer.is_null()) {
      answer["runsAs"] = answer.at("support");
    }
    cells.push_back(cell.at("cell"));
    states.push_back(std::move(cell));
  }
  for (Json& visit : json.at("visits")) {
    visit["frames"] = Json::array({visit.at("frames")});
    visit["workers"] = Json::array({visit.at("worker")});
    visit["yardstick"] = Json::array();
  }
  Json& driver = json.at("driver");
  for (Json& library : driver.at("libraries")) {
    library = {{"path", library}, {"build", ""}};
  }
  driver["environment"] = Json::array();
  json["cells"] = cells;
  json["profiles"] = Json::array();
  json["sides"] = Json::array({{{"name", name},
                                {"environment", json.at("settings").at("environment")},
                                {"driver", json.at("driver")},
                                {"cells", states},
                                {"whyNoWorker", json.at("endingSentence")}}});
  return json.get<Record>();
}

/// Two sides that drew in turns: their visits are the same but for the frames and the workers.
Record joined(Record base, Record newer) {
  base.sides.push_back(std::move(newer.sides.front()));
  for (std::size_t i = 0; i < base.visits.size(); ++i) {
    Visit& other = newer.visits.at(i);
    base.visits[i].frames.push_back(std::move(other.frames.front()));
    base.visits[i].workers.push_back(other.workers.front());
  }
  return base;
}

}  // namespace

Result resultOfFormatOne(const Json& own) {
  if (own.contains("record")) {
    return {{recordOf(own.at("record"), "")}};
  }
  const Json& comparison = own.at("comparison");
  const auto sideOf = [&](const char* side) {
    return recordOf(comparison.at(side).at("record"),
                    comparison.at(side).at("name").get<std::string>());
  };
  const double threshold = comparison.at("threshold");
  return comparison.at("inTurns").get<bool>()
             ? Result{{joined(sideOf("base"), sideOf("new"))}, threshold}
             : Result{{sideOf("base"), sideOf("new")}, threshold};
}

}  // namespace survey
