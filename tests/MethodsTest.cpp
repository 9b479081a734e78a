// The retained methods and the vertex array range, on drivers with and without the extensions.
#include <cmath>
#include <cstring>

#include "platform/gl/Driver.h"
#include "tests/support/EngineTest.h"

namespace {

FakeDriver driverWith(const char* extensions) {
  FakeDriver driver;
  driver.extensions = extensions;
  driver.integers[0x8520] = 1 << 20;  // GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE
  return driver;
}

TEST_F(EngineTest, DisplayListIsCompiledDirectlyAndReplaced) {
  test.setDetail(1);
  test.setMacros(true);
  takeCalls();
  test.setDrawMethod(kDrawDisplayLists);
  const Calls built = takeCalls();
  ASSERT_EQ(built.size(), 9U);
  EXPECT_EQ(built[0], call("glGenLists", 1));
  EXPECT_EQ(built[2], call("glBegin", GL_TRIANGLE_STRIP));
  EXPECT_EQ(built[3], call("glVertex3fv", test.getArrays().vertices));
  const double list = built[1].arguments[0];
  EXPECT_EQ(built[1], call("glNewList", list, GL_COMPILE));
  test.setNormals(true);
  const Calls rebuilt = takeCalls();
  EXPECT_EQ(rebuilt[0], call("glDeleteLists", list, 1));
  EXPECT_EQ(countOf(rebuilt, "glNormal3fv"), 4U);
  EXPECT_TRUE(test.getMacros());
  test.setDrawMethod(kDrawArrays);
  EXPECT_EQ(countOf(takeCalls(), "glDeleteLists"), 1U);
}

TEST(RowLayout, FollowsTheAttributes) {
  const bool units01[8] = {true, true};
  const bool none[8] = {};
  const bool all[8] = {true, true, true, true, true, true, true, true};
  const RowLayout lit = layoutRow(true, true, true, units01);
  EXPECT_EQ(lit.offsets.normalOffset, 12U);
  EXPECT_EQ(lit.offsets.colorOffset + lit.offsets.secondaryColorOffset, 0U);
  EXPECT_EQ(lit.offsets.texCoordOffsets[0], 24U);
  EXPECT_EQ(lit.offsets.texCoordOffsets[1], 32U);
  EXPECT_EQ(lit.stride, 40U);
  EXPECT_EQ(layoutRow(false, false, true, none).offsets.secondaryColorOffset, 12U);
  EXPECT_EQ(layoutRow(false, true, true, none).offsets.secondaryColorOffset, 24U);
  EXPECT_EQ(layoutRow(false, false, false, none).stride, 12U);
  EXPECT_EQ(layoutRow(false, true, true, all).stride, 100U);
}

TEST_F(EngineTest, BuffersAreBuiltDrawnAndReleased) {
  test.setDetail(1);
  test.setVertexColors(true);
  test.setTexturing(2, true);
  for (const auto& [method, usage] : {std::pair{kDrawArraysWithStaticVBO, GL_STATIC_DRAW},
                                      {kDrawArraysWithStatVertBufferObjectsVAO, GL_STATIC_DRAW},
                                      {kDrawArraysWithDynVertBufferObjectsVAO, GL_STREAM_DRAW}}) {
    test.setDrawMethod(kDrawArrays);
    takeCalls();
    test.setDrawMethod(method);
    ASSERT_EQ(test.getVertexBufferObjects().size(), 1U);
    const VertexBufferRecord record = test.getVertexBufferObjects()[0];
    const Calls pointAtUnit2 = {call("glActiveTextureARB", GL_TEXTURE2),
                                call("glClientActiveTextureARB", GL_TEXTURE2)};
    const Calls built = {call("glGenVertexArrays", 1, record.vertexArrayObject),
                         call("glBindVertexArray", record.vertexArrayObject),
                         call("glGenBuffersARB", 1, record.buffer),
                         call("glBindBufferARB", GL_ARRAY_BUFFER, record.buffer),
                         call("glVertexPointer", 3, GL_FLOAT, 32, 0),
                         call("glEnableClientState", GL_VERTEX_ARRAY),
                         call("glColorPointer", 3, GL_FLOAT, 32, 12),
                         call("glEnableClientState", GL_COLOR_ARRAY)};
    const Calls filled = {call("glEnableClientState", GL_TEXTURE_COORD_ARRAY),
                          call("glTexCoordPointer", 2, GL_FLOAT, 32, 24),
                          call("glBufferDataARB", GL_ARRAY_BUFFER, 4 * 32, 0, usage),
                          call("glMapBufferARB", GL_ARRAY_BUFFER, GL_WRITE_ONLY),
                          call("glUnmapBufferARB", GL_ARRAY_BUFFER)};
    const Calls unbound = {call("glBindBufferARB", GL_ARRAY_BUFFER, 0),
                           call("glBindVertexArray", 0)};
    EXPECT_EQ(takeCalls(), built + pointAtUnit2 + filled + unbound);
    for (std::size_t v = 0; v < 4; ++v) {
      const MeshArrays& a = test.getArrays();
      const unsigned char* const vertex = fakeDriver.buffer.data() + 32 * v;
      EXPECT_EQ(std::memcmp(vertex, a.vertices + v, 12), 0);
      EXPECT_EQ(std::memcmp(vertex + 12, a.colors + v, 12), 0);
      EXPECT_EQ(std::memcmp(vertex + 24, a.texCoords[2] + v, 8), 0);
    }

    const Calls draw = {call("glDrawArrays", GL_TRIANGLE_STRIP, 0, 4)};
    test.drawUsingVertexBufferObjects(2);
    const Calls bindAndPoint = method == kDrawArraysWithStaticVBO
                                   ? Calls{call("glBindBufferARB", GL_ARRAY_BUFFER, record.buffer),
                                           call("glVertexPointer", 3, GL_FLOAT, 32, 0),
                                           call("glColorPointer", 3, GL_FLOAT, 32, 12)} +
                                         pointAtUnit2 +
                                         Calls{call("glTexCoordPointer", 2, GL_FLOAT, 32, 24)}
                                   : Calls{call("glBindVertexArray", record.vertexArrayObject)};
    EXPECT_EQ(takeCalls(), repeat(2, bindAndPoint + draw));

    test.deleteVertexBufferObjects();
    EXPECT_EQ(takeCalls(), (Calls{call("glDeleteBuffersARB", 1, record.buffer),
                                  call("glDeleteVertexArrays", 1, record.vertexArrayObject)}));
    test.setDrawMethod(method);
    const Calls frame = drawFrame();
    EXPECT_EQ(Calls(frame.end() - 2, frame.end()), unbound);
  }
}

TEST_F(EngineTest, EveryRowHoldsItsPartOfTheMesh) {
  test.setDetail(3);
  for (const Primitive primitive : {kTriStrip, kTriangles, kQuads}) {
    test.setPrimitive(primitive);
    test.setDrawMethod(kDrawArraysWithVertArrayObjects);
    ASSERT_EQ(test.getVertexArrayObjects().size(), 3U);
    const auto* vertex = reinterpret_cast<const unsigned char*>(test.getArrays().vertices);
    for (const VertexArrayRecord& record : test.getVertexArrayObjects()) {
      EXPECT_EQ(record.byteSize, 12 * test.getLayout().verticesPerRow);
      EXPECT_EQ(std::memcmp(record.data.get(), vertex, record.byteSize), 0);
      vertex += record.byteSize;
    }
  }
}

TEST_F(EngineTest, FailedUnmapEndsTheProgram) {
  fakeDriver.unmapSucceeds = false;
  EXPECT_EXIT(test.setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "^UnmapBufferARB failed!\n$");
  fakeDriver.buffer.clear();
  EXPECT_EXIT(test.setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "no memory for a buffer of 1560 bytes");
}

TEST_F(EngineTest, NativeRangesAndRowObjects) {
  setUpOn(driverWith(kNativeExtensions));
  test.setDetail(1);
  test.setNormals(true);
  test.setDrawMethod(kDrawArraysWithVertArrayRng);
  EXPECT_EQ(test.maxVertexArraySize(), 1U << 20);
  const auto* const block = test.getArrays().vertices;
  const Calls declared = {call("glVertexArrayRangeAPPLE", 4 * 116, block),
                          call("glEnableClientState", GL_VERTEX_ARRAY_RANGE_APPLE),
                          call("glFlushVertexArrayRangeAPPLE", 4 * 116, block)};
  const Calls disable = {call("glDisableClientState", GL_VERTEX_ARRAY_RANGE_APPLE)};
  const Calls withdrawn = disable + Calls{call("glVertexArrayRangeAPPLE", 0, 0)};
  Calls frame = drawFrame();
  EXPECT_NE(std::search(frame.begin(), frame.end(), declared.begin(), declared.end()), frame.end());
  EXPECT_EQ(Calls(frame.end() - 2, frame.end()), withdrawn);

  takeCalls();
  test.setDrawMethod(kDrawArraysWithVertArrayObjects);
  const VertexArrayRecord& record = test.getVertexArrayObjects()[0];
  const GLuint name = record.vertexArrayObject;
  const std::byte* const data = record.data.get();
  EXPECT_EQ(takeCalls(),
            (Calls{call("glGenVertexArraysAPPLE", 1, name), call("glBindVertexArrayAPPLE", name),
                   call("glVertexArrayRangeAPPLE", 4 * 24, data),
                   call("glEnableClientState", GL_VERTEX_ARRAY),
                   call("glVertexPointer", 3, GL_FLOAT, 24, data),
                   call("glEnableClientState", GL_NORMAL_ARRAY),
                   call("glNormalPointer", GL_FLOAT, 24, data + 12),
                   call("glFlushVertexArrayRangeAPPLE", 4 * 24, data)} +
             disable + Calls{call("glBindVertexArrayAPPLE", 0)}));
  frame = drawFrame();
  EXPECT_EQ(countOf(frame, "glEnableClientState"), 3U);  // normals, vertices, range
  EXPECT_EQ(Calls(frame.end() - 2, frame.end()),
            disable + Calls{call("glBindVertexArrayAPPLE", 0)});
  test.deleteVertexArrayObjects();
  EXPECT_EQ(takeCalls(), withdrawn + Calls{call("glDeleteVertexArraysAPPLE", 1, name)});
}

TEST_F(EngineTest, PinnedRangeStandsInForTheFrame) {
  setUpOn(driverWith("GL_ARB_vertex_buffer_object GL_AMD_pinned_memory"));
  test.setDetail(1);
  test.setDrawMethod(kDrawArraysWithVertArrayRng);
  GLCoord3* const vertices = test.getArrays().vertices;
  fakeDriver.enabled[GL_VERTEX_ARRAY] = true;
  fakeDriver.pointers[GL_VERTEX_ARRAY_POINTER] = vertices;
  fakeDriver.integers[GL_VERTEX_ARRAY_SIZE] = 3;
  fakeDriver.integers[GL_VERTEX_ARRAY_TYPE] = GL_FLOAT;
  const Calls frame = drawFrame();

  const auto pinned = std::find_if(frame.begin(), frame.end(),
                                   [](const Call& c) { return c.name == "glBufferDataARB"; });
  ASSERT_NE(pinned, frame.end());
  const double first = pinned->arguments[2];
  EXPECT_EQ(std::fmod(first, 4096), 0);
  EXPECT_LE(first, asArgument(vertices));
  EXPECT_GE(first + pinned->arguments[1], asArgument(vertices) + 4 * 116);
  std::vector<double> pointers;
  for (const Call& made : frame) {
    if (made.name == "glVertexPointer") {
      pointers.push_back(made.arguments[3]);
    }
  }
  const double client = asArgument(vertices);
  EXPECT_EQ(pointers, (std::vector<double>{client, client - first, client}));
  EXPECT_EQ(frame.back().name, "glDeleteBuffersARB");
}

TEST_F(EngineTest, RebuildsLeaveNoNames) {
  for (const char* extensions :
       {kNativeExtensions, "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object",
        "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object GL_AMD_pinned_memory"}) {
    setUpOn(driverWith(extensions));
    fakeDriver.buffer.resize(8 << 20);
    test.setDetail(256);
    for (const DrawMethodTraits& method : kDrawMethods) {
      const int rebuilds = method.method == kDrawDisplayLists ? 4 : 100;
      test.setDrawMethod(method.method);
      const std::map<std::string, int> live = fakeDriver.live;
      for (int i = 0; i < rebuilds; ++i) {
        test.setNormals(i % 2 == 0);
        takeCalls();
      }
      EXPECT_EQ(fakeDriver.live, live) << method.word;
      test.setDrawMethod(kDrawArrays);
      for (const auto& [kind, count] : fakeDriver.live) {
        EXPECT_EQ(count, 0) << kind << " after " << method.word;
      }
    }
  }
}

TEST_F(EngineTest, ProvidersFollowTheDriver) {
  const auto provider = [this](const char* extensions) {
    setUpOn(driverWith(extensions));
    return driver().rangeProvider;
  };
  EXPECT_EQ(provider(kNativeExtensions), RangeProvider::kNative);
  EXPECT_EQ(provider("GL_AMD_pinned_memory GL_ARB_vertex_buffer_object"), RangeProvider::kPinned);
  EXPECT_EQ(provider("GL_AMD_pinned_memory_not_quite GL_ARB_vertex_buffer_object"),
            RangeProvider::kFilled);
  EXPECT_EQ(test.maxVertexArraySize(), 0x7FFFFFFFU / 116);
  EXPECT_EQ(provider(""), RangeProvider::kNone);
  EXPECT_EQ(test.maxVertexArraySize(), 0U);
  test.setDrawMethod(kDrawArraysWithVertArrayRng);
  EXPECT_EQ(countOf(drawFrame(), "glGenBuffersARB"), 0U);
  EXPECT_STREQ(traitsOf(kDrawArraysWithStaticVBO).missing(driver()), "vertex buffer objects");
  EXPECT_STREQ(traitsOf(kDrawArraysWithVertArrayObjects).missing(driver()), "vertex array objects");
  EXPECT_STREQ(traitsOf(kDrawCompiledVertArray).missing(driver()), "compiled vertex arrays");
}

}  // namespace
