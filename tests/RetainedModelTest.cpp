// The methods that draw the whole model with one call: what they build, call and refuse.
#include <cstring>
#include <regex>
#include <utility>

#include "engine/Support.h"
#include "platform/gl/Driver.h"
#include "tests/support/EngineTest.h"

namespace {

const Calls kPush = gl("PushAttrib", 0xFFFFF);

class RetainedModels : public EngineTest {
 protected:
  /// The calls of that many repetitions, outside a frame.
  Calls drawn(int reps) {
    takeCalls();
    test->drawRetainedModel(reps);
    return takeCalls();
  }

  void expectRefused(DrawMethod method, const std::string& part) {
    const Support support = supportOf(*test, method);
    EXPECT_EQ(support.as, RunsAs::kRefused) << method;
    EXPECT_NE(support.sentence.find(part), std::string::npos) << support.sentence;
  }
};

/// The first groups of all matches.
std::vector<std::string> found(const Calls& made, const std::string& pattern) {
  const std::regex expression(pattern);
  std::vector<std::string> all;
  for (std::sregex_iterator at(made.begin(), made.end(), expression), end; at != end; ++at) {
    all.push_back((*at)[1]);
  }
  return all;
}

TEST_F(RetainedModels, OneCallDrawsOneModel) {
  test->setThrash(true);
  test->setDetail(2);
  for (const auto& [primitive, strips, vertices] :
       {std::tuple{kTriStrip, 2, 6}, {kLineLoop, 2, 6}, {kQuads, 1, 16}, {kTriangles, 1, 24}}) {
    test->setPrimitive(primitive);
    const GLenum mode = test->getPrimitive();
    for (const auto& [method, model] :
         {std::pair{kMultiDrawArrays, gl("MultiDrawArrays", mode, 0, vertices, strips)},
          {kMultiDrawArraysIndirect, gl("MultiDrawArraysIndirect", mode, 0, strips, 0)},
          {kDrawElementsWithRestart,
           gl("DrawElements", mode, strips * vertices + strips - 1, GL_UNSIGNED_INT, 0)}}) {
      test->setDrawMethod(method);
      EXPECT_EQ(drawn(2), repeat(2, thrashed(model)));
    }
  }
}

TEST_F(RetainedModels, FramesBindWhatTheyDrawFromAndRestartOnlyWithinThem) {
  test->setDetail(1);
  test->setNormals(true);
  test->setDrawMethod(kDrawElementsWithRestart);
  const Calls built = takeCalls();
  EXPECT_TRUE(contains(built, gl("BufferDataARB", GL_ARRAY_BUFFER, 4 * 24, 0, GL_STATIC_DRAW) +
                                  gl("MapBufferARB", GL_ARRAY_BUFFER, GL_WRITE_ONLY)));
  EXPECT_TRUE(contains(built, gl("NormalPointer", GL_FLOAT, 24, rowPointer(0, 12)) +
                                  gl("EnableClientState", GL_NORMAL_ARRAY)));
  EXPECT_TRUE(built.ends_with(gl("BindBufferARB", GL_ARRAY_BUFFER, 0) + gl("BindVertexArray", 0)));
  float normal[3];
  std::memcpy(normal, fakeDriver.buffer.data() + 3, sizeof normal);
  EXPECT_EQ(normal[2], test->getArrays().normals[0].z);
  const Calls object = "glBindVertexArray " + found(built, "glGenVertexArrays 1 (.+)").at(0) + '\n';
  const Calls buffer =
      "glBindBufferARB 34962 " + found(built, "glGenBuffersARB 1 (.+)").at(0) + '\n';
  const Calls on = gl("PrimitiveRestartIndex", 0xFFFFFFFF) + gl("Enable", GL_PRIMITIVE_RESTART);
  const Calls off = gl("Disable", GL_PRIMITIVE_RESTART);
  Calls frame = drawFrame();
  EXPECT_TRUE(contains(frame, object + buffer + on + gl("ClearColor", 1, 1, 1, 1)));
  EXPECT_TRUE(frame.ends_with(off + gl("BindBufferARB", GL_ARRAY_BUFFER, 0)));
  fakeDriver.version = "3.0";
  fakeDriver.extensions += " GL_NV_primitive_restart";
  detectDriver();
  frame = drawFrame();
  EXPECT_TRUE(contains(frame, gl("PrimitiveRestartIndexNV", 0xFFFFFFFF) +
                                  gl("EnableClientState", GL_PRIMITIVE_RESTART_NV)));
  EXPECT_TRUE(contains(frame, gl("DisableClientState", GL_PRIMITIVE_RESTART_NV)));

  test->setDrawMethod(kMultiDrawArraysIndirect);
  EXPECT_TRUE(takeCalls().ends_with(gl("BindBufferARB", GL_DRAW_INDIRECT_BUFFER, 0) +
                                    gl("BindBufferARB", GL_ARRAY_BUFFER, 0) +
                                    gl("BindVertexArray", 0)));
  frame = drawFrame();
  const auto bound = found(frame, "glBindBufferARB 36671 (.+)");  // the buffer of draws
  ASSERT_EQ(bound.size(), 2U);
  EXPECT_NE(bound[0], "0");
  EXPECT_EQ(bound[1], "0");
}

TEST_F(RetainedModels, StreamsWriteWhatTheArraysHoldForEveryRepetition) {
  test->setDetail(1);
  test->setSecColor(true);
  const Calls draw = gl("MultiDrawArrays", GL_TRIANGLE_STRIP, 0, 4, 1);
  // What the draws find there is kept; after each the array holds something else.
  GLCoord3* const last = test->getArrays().secondaryColors + 3;
  std::size_t places = 1;
  std::vector<float> drew;
  fakeDriver.meanwhile["glMultiDrawArrays"] = [&] {
    drew.push_back(fakeDriver.buffer[24 * (drew.size() % places) + 21]);
    last->x += 1;
  };
  const auto expectDrawn = [&](const std::vector<float>& values) {
    EXPECT_EQ(std::exchange(drew, {}), values);
  };

  last->x = 5;
  test->setDrawMethod(kStreamSubData);
  EXPECT_TRUE(contains(takeCalls(), gl("BufferDataARB", GL_ARRAY_BUFFER, 96, 0, GL_STREAM_DRAW)));
  const Calls made = drawn(2);
  expectDrawn({5, 6});
  const auto sources = found(made, "glBufferSubDataARB 34962 0 96 0x(.+)");
  ASSERT_EQ(sources.size(), 2U);
  const auto* written = reinterpret_cast<const void*>(std::stoul(sources[0], nullptr, 16));
  EXPECT_EQ(made, repeat(2, gl("BufferSubDataARB", GL_ARRAY_BUFFER, 0, 96, written) + draw));

  test->setDrawMethod(kStreamMapRange);
  EXPECT_TRUE(contains(takeCalls(), gl("BufferDataARB", GL_ARRAY_BUFFER, 96, 0, GL_STREAM_DRAW)));
  EXPECT_EQ(drawn(2), repeat(2, gl("MapBufferRange", GL_ARRAY_BUFFER, 0, 96,
                                   GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT) +
                                    gl("UnmapBufferARB", GL_ARRAY_BUFFER) + draw));
  expectDrawn({7, 8});

  test->setDrawMethod(kStreamPersistent);
  const GLbitfield access = GL_MAP_WRITE_BIT | GL_MAP_PERSISTENT_BIT | GL_MAP_COHERENT_BIT;
  EXPECT_TRUE(contains(takeCalls(), gl("BufferStorage", GL_ARRAY_BUFFER, 3 * 96, 0, access) +
                                        gl("MapBufferRange", GL_ARRAY_BUFFER, 0, 3 * 96, access)));
  places = 3;
  drawn(4);
  expectDrawn({9, 10, 11, 12});
}

TEST_F(RetainedModels, TheRingWaitsForItsOldestPlaceWhenItIsFull) {
  test->setDetail(1);
  test->setThrash(true);
  test->setDrawMethod(kStreamPersistent);
  const Calls first = drawn(3);
  EXPECT_EQ(found(first, "glMultiDrawArrays 5 (.+)"),
            (std::vector<std::string>{"0 4 1", "4 4 1", "8 4 1"}));
  EXPECT_EQ(countOf(first, "glClientWaitSync"), 0);
  const auto fences = found(first, "glFenceSync (.+)");
  ASSERT_EQ(fences.size(), 3U);
  fakeDriver.waits = {GL_CONDITION_SATISFIED, GL_TIMEOUT_EXPIRED};  // the last one comes first
  const Calls second = drawn(2);
  const auto wait = [&](std::size_t i) {
    return call("glClientWaitSync", fences[i], GL_SYNC_FLUSH_COMMANDS_BIT, 1000000000);
  };
  EXPECT_TRUE(second.starts_with(kPush + wait(0) + wait(0) + call("glDeleteSync", fences[0]) +
                                 gl("MultiDrawArrays", GL_TRIANGLE_STRIP, 0, 4, 1) +
                                 "glFenceSync "));
  EXPECT_TRUE(contains(second, kPush + wait(1) + call("glDeleteSync", fences[1]) +
                                   gl("MultiDrawArrays", GL_TRIANGLE_STRIP, 4, 4, 1)));
  fakeDriver.waits = {GL_WAIT_FAILED};
  EXPECT_EXIT(drawn(1), testing::ExitedWithCode(1),
              "waiting for the driver to finish drawing failed");
}

TEST_F(RetainedModels, DriversThatLackSomethingAreRefused) {
  const std::string all = FakeDriver().extensions;
  const auto setUpWithout = [&](const std::string& extension) {
    setUpOn(std::regex_replace(all, std::regex(extension), ""));
  };
  setUpWithout("GL_ARB_multi_draw_indirect");
  expectRefused(kMultiDrawArraysIndirect, "no glMultiDrawArraysIndirect");
  setUpWithout("GL_ARB_map_buffer_range");
  expectRefused(kStreamMapRange, "no glMapBufferRange");
  expectRefused(kStreamPersistent, "no glMapBufferRange");
  setUpWithout("GL_ARB_buffer_storage");
  expectRefused(kStreamPersistent, "no persistently mapped buffers");
  setUpWithout("GL_ARB_sync");
  expectRefused(kStreamPersistent, "no fences");
  for (const char* needed : {"vertex_array_object", "vertex_buffer_object"}) {
    setUpWithout(std::string("GL_ARB_") + needed);
    for (int method = kMultiDrawArrays; method <= kStreamPersistent; ++method) {
      expectRefused(static_cast<DrawMethod>(method),
                    std::regex_replace(needed, std::regex("_"), " "));
    }
  }
  setUpOn(all);
  fakeDriver.version = "1.3.9";
  detectDriver();
  expectRefused(kDrawElementsWithRestart, "no primitive restart");
  expectRefused(kMultiDrawArrays, "no glMultiDrawArrays,");
  fakeDriver.version = "1.4";
  detectDriver();
  EXPECT_EQ(supportOf(*test, kMultiDrawArrays).as, RunsAs::kItself);
}

TEST_F(RetainedModels, BuffersAbove2GiBAreRefusedWhicheverSettingAsksForThem) {
  test->setColor(true);
  test->setSecColor(true);
  const bool all[8] = {true, true, true, true, true, true, true, true};
  test->setTexturing(all);
  test->setDrawMethod(kStreamPersistent);
  test->setPrimitive(kTriangles);
  takeCalls();
  test->setDetail(1093);  // 7,167,894 vertices of 100 bytes, three times
  EXPECT_EQ(countOf(takeCalls(), "glGen"), 0);
  expectRefused(kStreamPersistent,
                "the method streamPersistent would need a buffer of 2150368200 bytes");
  EXPECT_EXIT(test->draw(), testing::ExitedWithCode(1), "use a smaller detail");
  EXPECT_EQ(supportOf(*test, kStreamMapRange).as, RunsAs::kItself);
  test->setTexturing(0, false);
  EXPECT_EQ(countOf(takeCalls(), "glMapBufferRange 34962 0 1978338744"), 1);
  EXPECT_EQ(supportOf(*test, kStreamPersistent).as, RunsAs::kItself);
}

TEST_F(RetainedModels, MemoryThatTheDriverRefusesEndsTheProgram) {
  const auto expectEnd = [](auto statement, const char* sentence) {
    EXPECT_EXIT(statement(), testing::ExitedWithCode(1), sentence);
  };
  test->setDetail(1);
  test->setDrawMethod(kStreamMapRange);
  const FakeDriver whole = fakeDriver;
  fakeDriver.unmapSucceeds = false;
  expectEnd([&] { drawn(1); }, "lost the vertices");
  fakeDriver.buffer.clear();
  expectEnd([&] { drawn(1); }, "no memory for a buffer of 48 bytes");
  expectEnd([&] { test->setDrawMethod(kStreamPersistent); }, "a buffer of 144 bytes");
  fakeDriver = whole;
  fakeDriver.integers[GL_BUFFER_SIZE] = 0;
  for (const DrawMethod method : {kMultiDrawArrays, kStreamSubData, kStreamMapRange}) {
    expectEnd([&] { test->setDrawMethod(method); }, "no memory for a buffer of 48 bytes");
  }
}

}  // namespace
