#include "survey/protocol/Channel.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <sys/socket.h>
#include <unistd.h>

namespace survey {

Channel::~Channel() {
  if (descriptor >= 0) {
    close(descriptor);
  }
}

std::pair<Channel, Channel> Channel::pair() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  return {Channel(ends[0]), Channel(ends[1])};
}

bool Channel::send(const nlohmann::json& message) const {
  // A driver's strings need not be UTF-8.
  const std::string text = message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  return ::send(descriptor, text.data(), text.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(text.size());
}

std::optional<nlohmann::json> Channel::receive() const {
  // The first look tells the packet's length.
  ssize_t length = 0;
  do {
    length = recv(descriptor, nullptr, 0, MSG_PEEK | MSG_TRUNC);
  } while (length < 0 && errno == EINTR);
  if (length <= 0) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  if (recv(descriptor, text.data(), text.size(), 0) != length) {
    return std::nullopt;
  }
  return nlohmann::json::parse(text, nullptr, false);
}

}  // namespace survey
