#include "survey/worker/Serve.h"

namespace survey {
namespace {

nlohmann::json answerTo(const Request& request, Subject& subject) {
  if (const auto* const begin = std::get_if<Begin>(&request)) {
    return answerMessage(subject.begin(*begin));
  }
  if (const auto* const set = std::get_if<SetCell>(&request)) {
    return answerMessage(subject.set(set->cell));
  }
  const auto& draw = std::get<DrawFrame>(request);
  return answerMessage(subject.draw(std::chrono::microseconds(draw.leastTime)));
}

}  // namespace

void serve(const Channel& channel, Subject& subject) {
  while (const auto message = channel.receive()) {
    nlohmann::json answer;
    try {
      answer = answerTo(requestOf(*message), subject);
    } catch (const std::exception& error) {
      answer = failureMessage(error.what());
    }
    channel.send(answer);
  }
}

}  // namespace survey
