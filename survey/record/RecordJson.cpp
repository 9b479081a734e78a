#include "survey/record/RecordJson.h"

namespace survey {
namespace {

using Json = nlohmann::json;

Json orNull(const std::optional<std::int64_t>& value) {
  return value ? Json(*value) : Json();
}

std::optional<std::int64_t> optionalTime(const Json& json) {
  return json.is_null() ? std::nullopt : std::optional(json.get<std::int64_t>());
}

}  // namespace

NLOHMANN_JSON_SERIALIZE_ENUM(Ending, {{Ending::kTimeUp, "time up"},
                                      {Ending::kPrecise, "precise"},
                                      {Ending::kInterrupted, "interrupted"},
                                      {Ending::kNoWorker, "no worker"},
                                      {Ending::kNothingLeft, "nothing left"}})

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Machine, host, kernel, processor, processors, virtualMachine,
                                   powerSource, caches)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(MachineState, when, load, governor, clock, steal)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Program, version, commit, buildType, compiler, flags, optimised)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Settings, seconds, precision, frame, seed, device, onScreen,
                                   patience, commandLine, environment)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Visit, cell, block, worker, start, frames)

void to_json(Json& json, const Frame& frame) {
  json = Json::array({frame.primitives, frame.wall, frame.cpu, frame.wait, orNull(frame.gpu),
                      orNull(frame.steal), frame.disturbed, frame.late});
}

void from_json(const Json& json, Frame& frame) {
  json.at(0).get_to(frame.primitives);
  json.at(1).get_to(frame.wall);
  json.at(2).get_to(frame.cpu);
  json.at(3).get_to(frame.wait);
  frame.gpu = optionalTime(json.at(4));
  frame.steal = optionalTime(json.at(5));
  json.at(6).get_to(frame.disturbed);
  json.at(7).get_to(frame.late);
}

void to_json(Json& json, const Cache& cache) {  // as Google Benchmark writes it
  json = {{"type", cache.type},
          {"level", cache.level},
          {"size", cache.size},
          {"num_sharing", cache.sharing}};
}

void from_json(const Json& json, Cache& cache) {
  json.at("type").get_to(cache.type);
  json.at("level").get_to(cache.level);
  json.at("size").get_to(cache.size);
  json.at("num_sharing").get_to(cache.sharing);
}

static void to_json(Json& json, const CellRecord& cell) {
  json = {{"cell", cell.cell}, {"faults", cell.faults}};
  json["answer"] = cell.answer ? Json(*cell.answer) : Json();
}

static void from_json(const Json& json, CellRecord& cell) {
  json.at("cell").get_to(cell.cell);
  json.at("faults").get_to(cell.faults);
  const Json& answer = json.at("answer");
  cell.answer = answer.is_null() ? std::nullopt : std::optional(answer.get<CellAnswer>());
}

void to_json(Json& json, const Record& record) {
  json = {{"program", record.program}, {"settings", record.settings},
          {"machine", record.machine}, {"before", record.before},
          {"after", record.after},     {"driver", record.driver},
          {"cells", record.cells},     {"frameColumns", kFrameColumns},
          {"visits", record.visits},   {"speeds", record.speeds},
          {"ending", record.ending},   {"endingSentence", record.endingSentence},
          {"signal", record.signal},   {"elapsed", record.elapsed}};
}

void from_json(const Json& json, Record& record) {
  json.at("program").get_to(record.program);
  json.at("settings").get_to(record.settings);
  json.at("machine").get_to(record.machine);
  json.at("before").get_to(record.before);
  json.at("after").get_to(record.after);
  json.at("driver").get_to(record.driver);
  json.at("cells").get_to(record.cells);
  json.at("visits").get_to(record.visits);
  json.at("speeds").get_to(record.speeds);
  json.at("ending").get_to(record.ending);
  json.at("endingSentence").get_to(record.endingSentence);
  json.at("signal").get_to(record.signal);
  json.at("elapsed").get_to(record.elapsed);
}

}  // namespace survey
