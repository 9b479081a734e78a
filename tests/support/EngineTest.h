/// A GL that draws nothing, linked in place of the GL library and of the context fetch, and a test
/// object on it. The GL keeps every call and poses as whatever driver a test wants.
#pragma once

#include <map>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Reporting.h"
#include "tests/support/Fakes.h"

/// Calls, a line each: the name and the arguments. Of light and material values the values
/// themselves are kept. Calls through the context's table are named "context " and the entry's
/// name.
using Calls = std::string;

template <typename... Arguments>
Calls call(const std::string& name, Arguments... arguments) {
  std::ostringstream words;
  words << name;
  ((words << ' ' << arguments), ...);
  return words.str() + '\n';
}

template <typename... Arguments>
Calls gl(const std::string& name, Arguments... arguments) {
  return call("gl" + name, arguments...);
}

inline Calls repeat(int times, const Calls& once) {
  return times > 0 ? once + repeat(times - 1, once) : "";
}

struct FakeDriver {
  std::string extensions =
      "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object GL_EXT_compiled_vertex_array";
  std::map<GLenum, GLint> integers = {{GL_MAX_LIGHTS, 8},
                                      {GL_MAX_TEXTURE_UNITS, 8},
                                      {GL_BUFFER_SIZE, 1},  // of any buffer
                                      {0x8520, 1 << 20}};   // vertices of a native range
  GLuint nextName = 1;  ///< across all kinds, so that no two are alike
  bool unmapSucceeds = true;
  std::vector<float> buffer = std::vector<float>(1 << 18);  ///< that gets mapped
};

extern FakeDriver fakeDriver;
extern Calls calls;

/// The calls made since the last take.
Calls takeCalls();

class EngineTest : public testing::Test {
 protected:
  EngineTest() {
    vpt = &test;
    perfHistory = &history;
    report = {};
    setUpOn(FakeDriver().extensions);
  }

  void setUpOn(const std::string& extensions) {
    fakeDriver = FakeDriver();
    fakeDriver.extensions = extensions;
    fakeClock = {};
    test.initGL();
    takeCalls();
  }

  /// Parses these words as the command line; whether they are good.
  static bool parse(std::vector<std::string> words) {
    std::vector<char*> argv = {nullptr};
    for (std::string& word : words) {
      argv.push_back(word.data());
    }
    return applyArguments(static_cast<int>(argv.size()), argv.data());
  }
  /// Sets what these options say; nothing is recorded then.
  static void apply(const std::string& options) {
    std::istringstream words("-r 1 " + options);
    EXPECT_TRUE(parse({std::istream_iterator<std::string>(words), {}})) << options;
    takeCalls();
  }

  /// The calls of one frame of exactly one pass, and what came before it.
  Calls drawFrame() {
    fakeClock.step = 100000;
    test.draw();
    return takeCalls();
  }

  static int countOf(const Calls& made, const std::string& part) {
    int count = 0;
    for (auto at = made.find(part); at != Calls::npos; at = made.find(part, at + 1)) {
      ++count;
    }
    return count;
  }
  static bool contains(const Calls& made, const Calls& part) { return countOf(made, part) > 0; }

  PerformanceHistory history;
  SorvantaTest test{&history};
};
