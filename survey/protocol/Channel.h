/// One end of the line between the controller and a worker: JSON texts, one a packet, on a
/// descriptor of its own, so that nothing a driver prints can be taken for an answer.
#pragma once

#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

namespace survey {

class Channel {
 public:
  /// Takes the descriptor over; it must be a socket of packets.
  explicit Channel(int socket) : descriptor(socket) {}
  Channel(Channel&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
  Channel& operator=(Channel&& other) noexcept {
    std::swap(descriptor, other.descriptor);
    return *this;
  }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  ~Channel();

  /// Two ends; throws std::system_error. Neither stays open in a program that is executed.
  static std::pair<Channel, Channel> pair();

  int get() const { return descriptor; }
  /// Whether the other end took it.
  bool send(const nlohmann::json& message) const;
  /// Waits for a packet. None when the other end is closed; a discarded value for what is no JSON.
  std::optional<nlohmann::json> receive() const;

 private:
  int descriptor;
};

}  // namespace survey
