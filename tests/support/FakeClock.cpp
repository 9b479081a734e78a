#include "tests/support/FakeClock.h"

#include "perf/Clock.h"

FakeClock fakeClock;

std::uint64_t getTime() {
  const std::uint64_t reading = fakeClock.now;
  fakeClock.now += fakeClock.step;
  return reading;
}
