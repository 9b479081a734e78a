/// A test object on the recording GL, set up, with nothing recorded yet.
#pragma once

#include <algorithm>
#include <string_view>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "tests/support/FakeClock.h"
#include "tests/support/RecordingGl.h"

using Calls = std::vector<Call>;

/// A driver that has the vertex array extensions themselves.
inline constexpr const char* kNativeExtensions =
    "GL_APPLE_vertex_array_object GL_APPLE_vertex_array_range GL_ARB_vertex_buffer_object";

class EngineTest : public testing::Test {
 protected:
  EngineTest() { setUpOn(FakeDriver()); }

  void setUpOn(FakeDriver newDriver) {
    newDriver.buffer.resize(1 << 20);
    fakeDriver = std::move(newDriver);
    fakeClock = {};
    test.initGL();
    takeCalls();
  }

  /// The calls of one frame of exactly one pass.
  Calls drawFrame() {
    fakeClock.step = 100000;
    takeCalls();
    test.draw();
    return takeCalls();
  }

  static std::size_t countOf(const Calls& made, std::string_view name) {
    return static_cast<std::size_t>(
        std::count_if(made.begin(), made.end(), [=](const Call& c) { return c.name == name; }));
  }

  PerformanceHistory history;
  SorvantaTest test{&history};
};

inline Calls operator+(Calls first, const Calls& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

inline Calls repeat(int times, const Calls& once) {
  Calls all;
  for (int i = 0; i < times; ++i) {
    all = std::move(all) + once;
  }
  return all;
}
