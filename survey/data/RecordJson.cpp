#include "survey/data/RecordJson.h"

namespace survey {
namespace {

using Json = nlohmann::json;

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

template <typename Value>
void readOrNull(const Json& json, std::optional<Value>& value) {
  value = json.is_null() ? std::nullopt : std::optional(json.get<Value>());
}

}  // namespace

void to_json(Json& json, const Frame& frame) {
  json = Json::array({frame.primitives, frame.wall, frame.cpu, frame.wait, orNull(frame.gpu),
                      orNull(frame.steal), frame.disturbed, frame.late});
}

void from_json(const Json& json, Frame& frame) {
  json.at(0).get_to(frame.primitives);
  json.at(1).get_to(frame.wall);
  json.at(2).get_to(frame.cpu);
  json.at(3).get_to(frame.wait);
  readOrNull(json.at(4), frame.gpu);
  readOrNull(json.at(5), frame.steal);
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

void to_json(Json& json, const CellState& state) {
  json = {{"answer", orNull(state.answer)}, {"faults", state.faults}};
}

void from_json(const Json& json, CellState& state) {
  readOrNull(json.at("answer"), state.answer);
  json.at("faults").get_to(state.faults);
}

}  // namespace survey
