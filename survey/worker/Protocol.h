/// What controller and worker say to each other: JSON texts, one a packet, over a pair of sockets
/// of their own, so that nothing a driver prints can be taken for an answer. The controller asks,
/// the worker answers each request with one packet: the answer, or a failure with a sentence.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/process/Descriptor.h"
#include "survey/data/Record.h"

namespace survey {

/// The first request: make a context and settle down. Answered by a Driver.
struct Begin {
  /// A number of the list, or a part of a name; empty: the one that $SORVANTA_DEVICE chooses, or
  /// else the first that works.
  std::string device;
  bool onScreen = false;
  std::optional<unsigned int> core;  ///< for the submitting thread, once the context exists
  /// Of the allocations made before the context, so that no process's heap is like another's.
  std::uint64_t heapSeed = 0;
};

/// What a worker works on. A member that throws std::exception fails with its text as the sentence;
/// the controller then has no more use for the worker.
class Subject {
 public:
  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;
  virtual ~Subject() = default;

  virtual Driver begin(const Begin& begin) = 0;
  /// Only after one with a figure frames may be asked for.
  virtual CellAnswer set(const Cell& cell) = 0;
  virtual Frame draw(std::chrono::microseconds leastTime) = 0;
  /// Draws so many frames, and tells where their time went.
  virtual Profile profile(std::chrono::microseconds leastTime, int frames) = 0;
};

/// Answers requests until the other end is closed.
void serve(const Descriptor& socket, Subject& subject);

/// Two connected ends; throws std::system_error. Neither stays open in a program that is executed.
std::pair<Descriptor, Descriptor> socketPair();

/// Whether the other end took it.
bool sendPacket(const Descriptor& socket, const std::string& text);
/// Waits for one. None when the other end is closed.
std::optional<std::string> receivePacket(const Descriptor& socket);

/// The requests, as packets.
std::string requestOf(const Begin& begin);
std::string requestOf(const Cell& cell);
std::string requestOf(std::chrono::microseconds leastTimeOfFrame);
std::string requestOfProfile(std::chrono::microseconds leastTimeOfFrame, int frames);

/// The worker's own reason why it has no answer.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The answer in a packet: a Driver, a CellAnswer, a Frame or a Profile, as was asked for; none in
/// a packet that holds neither that nor a failure. Throws Failure.
template <typename Answer>
std::optional<Answer> answerIn(const std::string& packet);

}  // namespace survey
