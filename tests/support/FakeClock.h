/// A clock that tests set, linked in place of the real one. It stands still unless `step` is set.
#pragma once

#include <cstdint>

struct FakeClock {
  std::uint64_t now = 1'000'000;  ///< microseconds
  std::uint64_t step = 0;         ///< added by every reading, after it
};

extern FakeClock fakeClock;
