/// What controller and worker say to each other. The controller asks, the worker answers each
/// request with one message: the answer, or a failure with a sentence.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include <nlohmann/json.hpp>

#include "survey/record/RecordJson.h"

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

/// Set a cell. Answered by a CellAnswer. Only after one with a figure frames may be asked for.
struct SetCell {
  Cell cell;
};

/// Draw one frame. Answered by a Frame.
struct DrawFrame {
  std::int64_t leastTime = 0;  ///< microseconds that are measured at least
};

using Request = std::variant<Begin, SetCell, DrawFrame>;

nlohmann::json toJson(const Request& request);
/// Throws nlohmann's exceptions for what is no request.
Request requestOf(const nlohmann::json& json);

/// The message of an answer, and of a failure.
template <typename Answer>
nlohmann::json answerMessage(const Answer& answer) {
  return {{"answer", answer}};
}
nlohmann::json failureMessage(const std::string& sentence);

}  // namespace survey
