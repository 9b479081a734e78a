#include "survey/protocol/Messages.h"

namespace survey {
namespace {

using Json = nlohmann::json;

template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

Json toJson(const Request& request) {
  return std::visit(Overloaded{[](const Begin& begin) -> Json {
                                 return {{"request", "begin"},
                                         {"device", begin.device},
                                         {"onScreen", begin.onScreen},
                                         {"core", begin.core ? Json(*begin.core) : Json()},
                                         {"heapSeed", begin.heapSeed}};
                               },
                               [](const SetCell& set) -> Json {
                                 return {{"request", "set"}, {"cell", set.cell}};
                               },
                               [](const DrawFrame& draw) -> Json {
                                 return {{"request", "draw"}, {"leastTime", draw.leastTime}};
                               }},
                    request);
}

Request requestOf(const Json& json) {
  const auto kind = json.at("request").get<std::string>();
  if (kind == "begin") {
    Begin begin{json.at("device"), json.at("onScreen"), std::nullopt, json.at("heapSeed")};
    if (!json.at("core").is_null()) {
      begin.core = json.at("core").get<unsigned int>();
    }
    return begin;
  }
  if (kind == "set") {
    return SetCell{json.at("cell").get<Cell>()};
  }
  return DrawFrame{json.at("leastTime")};
}

Json failureMessage(const std::string& sentence) {
  return {{"failure", sentence}};
}

}  // namespace survey
