#include "survey/worker/Protocol.h"

#include <cerrno>
#include <system_error>

#include <sys/socket.h>

#include "survey/data/RecordJson.h"

namespace survey {
namespace {

using Json = nlohmann::json;

/// A driver's strings need not be UTF-8.
std::string textOf(const Json& message) {
  return message.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json answerTo(const Json& request, Subject& subject) {
  const auto kind = request.at("request").get<std::string>();
  if (kind == "begin") {
    const Json& core = request.at("core");
    return subject.begin({request.at("device"), request.at("onScreen"),
                          core.is_null() ? std::nullopt : std::optional(core.get<unsigned int>()),
                          request.at("heapSeed")});
  }
  if (kind == "set") {
    return subject.set(request.at("cell").get<Cell>());
  }
  const std::chrono::microseconds leastTime(request.at("leastTime").get<std::int64_t>());
  if (kind == "profile") {
    return subject.profile(leastTime, request.at("frames"));
  }
  return subject.draw(leastTime);
}

}  // namespace

void serve(const Descriptor& socket, Subject& subject) {
  while (const auto packet = receivePacket(socket)) {
    Json message;
    try {
      message = {{"answer", answerTo(Json::parse(*packet), subject)}};
    } catch (const std::exception& error) {
      message = {{"failure", error.what()}};
    }
    sendPacket(socket, textOf(message));
  }
}

std::pair<Descriptor, Descriptor> socketPair() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

bool sendPacket(const Descriptor& socket, const std::string& text) {
  return send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(text.size());
}

std::optional<std::string> receivePacket(const Descriptor& socket) {
  // The first look tells the packet's length.
  ssize_t length = 0;
  do {
    length = recv(socket.get(), nullptr, 0, MSG_PEEK | MSG_TRUNC);
  } while (length < 0 && errno == EINTR);
  if (length <= 0) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  if (recv(socket.get(), text.data(), text.size(), 0) != length) {
    return std::nullopt;
  }
  return text;
}

std::string requestOf(const Begin& begin) {
  return textOf({{"request", "begin"},
                 {"device", begin.device},
                 {"onScreen", begin.onScreen},
                 {"core", begin.core ? Json(*begin.core) : Json()},
                 {"heapSeed", begin.heapSeed}});
}

std::string requestOf(const Cell& cell) {
  return textOf({{"request", "set"}, {"cell", cell}});
}

std::string requestOf(std::chrono::microseconds leastTimeOfFrame) {
  return textOf({{"request", "draw"}, {"leastTime", leastTimeOfFrame.count()}});
}

std::string requestOfProfile(std::chrono::microseconds leastTimeOfFrame, int frames) {
  return textOf(
      {{"request", "profile"}, {"leastTime", leastTimeOfFrame.count()}, {"frames", frames}});
}

template <typename Answer>
std::optional<Answer> answerIn(const std::string& packet) {
  const Json message = Json::parse(packet, nullptr, false);
  if (!message.is_object()) {
    return std::nullopt;
  }
  if (message.contains("failure") && message.at("failure").is_string()) {
    throw Failure(message.at("failure").get<std::string>());
  }
  try {
    return message.at("answer").get<Answer>();
  } catch (const Json::exception&) {
    return std::nullopt;
  }
}

template std::optional<Driver> answerIn(const std::string& packet);
template std::optional<CellAnswer> answerIn(const std::string& packet);
template std::optional<Frame> answerIn(const std::string& packet);
template std::optional<Profile> answerIn(const std::string& packet);

}  // namespace survey
