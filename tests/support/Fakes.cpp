#include "tests/support/Fakes.h"

#include "perf/Clock.h"

FakeClock fakeClock;
FakeServices fakeServices;

std::uint64_t getTime() {
  const std::uint64_t reading = fakeClock.now;
  fakeClock.now += fakeClock.step;
  return reading;
}

Services& services() {
  return fakeServices;
}
