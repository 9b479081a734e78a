/// Why a side is slower than another one: which functions take longer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/judge/Changes.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Times in nanoseconds a vertex.
struct FunctionChange {
  std::string function;  ///< empty where its file does not name it
  std::string file;      ///< without versions; empty for what was made at run time
  double base = 0;
  double newer = 0;
  Interval change{};           ///< of 95 %, with the process as the unit of replication
  std::uint64_t baseSize = 0;  ///< of its code, in bytes; 0: not known
  std::uint64_t newSize = 0;
  bool changed = false;  ///< surely, with the chance of any false one among all held at 5 %
};

/// Whether its code is as long as before: then it is probably the same, in another place or with
/// other data.
inline bool hasSameSize(const FunctionChange& function) {
  return function.baseSize > 0 && function.baseSize == function.newSize;
}

struct Explanation {
  std::size_t cell = 0;  ///< index into the sitting's cells
  std::size_t blocks = 0;
  double base = 0;   ///< of the sampled frames, all that they took
  double newer = 0;  ///< likewise
  std::vector<FunctionChange>
      functions;  ///< those that changed most first; small ones are left out
  /// What is not in any function: in the kernel, asleep until another thread was done, or between
  /// samples.
  FunctionChange outside;
  std::string whyNot;  ///< why there are no samples; empty: there are
};

/// What a method takes more for every call and for every vertex, in nanoseconds.
struct CallChange {
  std::size_t cell = 0;  ///< one of those that it was found from
  Interval perCall{};
  Interval perVertex{};
};

/// Of methods that changed in a cell and were compared at several details, at which a call draws
/// unlike many vertices: the line through what a call takes more, by weighted least squares.
std::vector<CallChange> callChangesOf(const Changes& changes);

/// Of the cells that were sampled on both sides. Functions are the same where their names and their
/// files' names without versions are.
std::vector<Explanation> explanationsOf(const SideView& base, const SideView& newer);

}  // namespace survey
