/// A test object on the recording GL.
#pragma once

#include <optional>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"
#include "tests/support/Fakes.h"
#include "tests/support/RecordingGl.h"

/// A driver that has the vertex array extensions themselves.
constexpr const char* kNative =
    "GL_APPLE_vertex_array_object GL_APPLE_vertex_array_range GL_ARB_vertex_buffer_object";

class EngineTest : public testing::Test {
 protected:
  EngineTest() { setUpOn(FakeDriver().extensions); }

  /// A new test object, on a driver with these extensions. What the set-up prints and calls is
  /// returned.
  Calls setUpOn(const std::string& extensions) {
    test.reset();
    forceRangeProvider(RangeProvider::kNone);  // lets go of what the last driver's kept
    fakeDriver = FakeDriver();
    fakeDriver.extensions = extensions;
    fakeClock = {};
    fakeServices = {};
    history = {};
    test.emplace(&history);
    testing::internal::CaptureStdout();
    test->initGL();
    return testing::internal::GetCapturedStdout() + takeCalls();
  }

  /// The calls of one frame of exactly one pass, and what came before it.
  Calls drawFrame() {
    fakeClock.step = 100000;
    test->draw();
    return takeCalls();
  }

  PerformanceHistory history;
  std::optional<SorvantaTest> test;
};
