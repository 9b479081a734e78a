// Every method's own operations, and what it builds and releases.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <numeric>

#include "engine/Support.h"
#include "engine/methods/ImmediateModeFamily.h"
#include "platform/gl/Driver.h"
#include "tests/support/EngineTest.h"

namespace {

using Methods = EngineTest;

/// Two strips of six vertices with the attributes of a variant, as the emitter of the family does
/// it that has this variant's name, or as the generic one does. That one has texture unit 7 in
/// place of 2.
Calls strips(unsigned long variant, bool macro, bool generic, const MeshArrays& a) {
  const std::string prefix = macro ? "context " : "gl";
  const std::string bracket = generic ? "gl" : prefix;
  const std::string multi = generic && !macro ? "MultiTexCoord2fvARB" : "MultiTexCoord2fv";
  const std::string secondary = generic && !macro ? "SecondaryColor3fvEXT" : "SecondaryColor3fv";
  const bool plain = !generic && (!macro || (variant & 48) == 0);
  const unsigned int last = generic ? 7 : 2;
  Calls all = macro ? "CGLGetCurrentContext\n" : "";
  const auto send = [&](unsigned int bit, const std::string& name, auto... arguments) {
    all += (variant & bit) == bit ? call(prefix + name, arguments...) : "";
  };
  for (int i = 0; i < 12; ++i) {
    all += i % 6 == 0 ? call(bracket + "Begin", GL_TRIANGLE_STRIP) : "";
    send(1, "Normal3fv", a.normals + i);
    send(2, "Color3fv", a.colors + i);
    send(4, secondary, a.secondaryColors + i);
    plain ? send(8, "TexCoord2fv", a.texCoords[0] + i)
          : send(8, multi, GL_TEXTURE0, a.texCoords[0] + i);
    send(16, multi, GL_TEXTURE1, a.texCoords[1] + i);
    send(32, multi, GL_TEXTURE0 + last, a.texCoords[last] + i);
    send(0, "Vertex3fv", a.vertices + i);
    all += i % 6 == 5 ? call(bracket + "End") : "";
  }
  return all;
}

TEST_F(Methods, EmittersSendWhatIsWanted) {
  test->setDetail(2);
  test->setThrash(true);
  const MeshArrays& a = test->getArrays();
  auto texCoords = a.texCoords;
  const auto run = [&](auto function, unsigned long variant) {
    return function(variant, 2, GL_TRIANGLE_STRIP, a.vertices, a.colors, a.secondaryColors,
                    a.normals, texCoords.data());
  };
  for (unsigned long variant = 0; variant < 64; ++variant) {
    const auto bit = [=](int i) { return (variant >> i & 1) != 0; };
    const bool units[8] = {bit(3), bit(4), false, false, false, false, false, bit(5)};
    test->setNormals(bit(0));
    test->setColor(bit(1));
    test->setSecColor(bit(2));
    test->setTexturing(units);
    for (const bool macros : {false, true}) {
      test->setMacros(macros);
      test->drawImmediateMode(2);
      EXPECT_EQ(takeCalls(), repeat(2, thrashed(strips(variant, macros, true, a)))) << variant;
      EXPECT_TRUE(run(macros ? DoImmediateModeMacro : DoImmediateMode, variant));
      EXPECT_EQ(takeCalls(), strips(variant, macros, false, a)) << variant;
    }
  }
  EXPECT_FALSE(run(DoImmediateMode, 64) || run(DoImmediateModeMacro, 64));
}

TEST_F(Methods, AListThatDoesNotFitEndsTheProgramAfterTheStripThatDidNot) {
  fakeDriver.errors["glEnd"] = GL_OUT_OF_MEMORY;
  const auto compileAndTellStrips = [this] {
    std::atexit([] { std::cerr << countOf(takeCalls(), gl("End")); });
    test->setDrawMethod(kDrawDisplayLists);
  };
  EXPECT_EXIT(compileAndTellStrips(), testing::ExitedWithCode(1),
              "cannot compile the display list of this model: out of memory.\n1$");

  // A driver may crash in the call that met the error, and tell of it just before.
  setUpOn("GL_KHR_debug");
  test->setDrawMethod(kDrawDisplayLists);
  const Calls made = takeCalls();
  EXPECT_TRUE(made.starts_with(call("glDebugMessageCallback", 1) + gl("Enable", GL_DEBUG_OUTPUT) +
                               gl("GenLists", 1, 17)));
  EXPECT_TRUE(made.ends_with(gl("EndList") + gl("Disable", GL_DEBUG_OUTPUT) +
                             call("glDebugMessageCallback", 0)));
  const auto tell = [](GLenum type) {
    fakeDriver.onMessage(GL_DEBUG_SOURCE_API, type, 1, GL_DEBUG_SEVERITY_HIGH, -1,
                         "no memory in a strip", nullptr);
  };
  tell(GL_DEBUG_TYPE_PERFORMANCE);
  EXPECT_EXIT(tell(GL_DEBUG_TYPE_ERROR), testing::ExitedWithCode(1),
              "display list of this model: no memory in a strip.\n$");
}

TEST_F(Methods, OperationsTakeEitherPathAndThrash) {
  test->setDetail(2);
  test->setThrash(true);
  for (const std::string path : {"context ", "gl"}) {
    test->setMacros(path != "gl");
    const Calls fetch = path == "gl" ? "" : "CGLGetCurrentContext\n";
    // A list is compiled with direct calls.
    test->setDrawMethod(kDrawDisplayLists);
    EXPECT_EQ(takeCalls(), gl("GenLists", 1, 17) + gl("NewList", 17, GL_COMPILE) +
                               strips(0, false, true, test->getArrays()) + gl("EndList"));
    test->drawDisplayList(2);
    EXPECT_EQ(takeCalls(), fetch + repeat(2, thrashed(call(path + "CallList", 17))));
    test->setDrawMethod(kDrawArrays);
    EXPECT_EQ(takeCalls(), gl("DeleteLists", 17, 1));
    Calls arrays;
    Calls elements;
    for (int first : {0, 6}) {
      arrays += call(path + "DrawArrays", GL_TRIANGLE_STRIP, first, 6);
      elements += call(path + "Begin", GL_TRIANGLE_STRIP);
      for (int i = first; i < first + 6; ++i) {
        elements += call(path + "ArrayElement", i);
      }
      elements += call(path + "End");
    }
    test->drawUsingArrays(2);
    test->drawUsingArrayElements(2);
    EXPECT_EQ(takeCalls(),
              fetch + repeat(2, thrashed(arrays)) + fetch + repeat(2, thrashed(elements)));
  }
}

TEST_F(Methods, BuffersAreBuiltDrawnAndReleased) {
  test->setDetail(1);
  test->setColor(true);
  test->setSecColor(true);
  test->setTexturing(2, true);
  const Calls pointers = gl("VertexPointer", 3, GL_FLOAT, 44, 0) +
                         gl("ColorPointer", 3, GL_FLOAT, 44, rowPointer(0, 12)) +
                         gl("SecondaryColorPointer", 3, GL_FLOAT, 44, rowPointer(0, 24)) +
                         activeUnit(GL_TEXTURE2) +
                         gl("TexCoordPointer", 2, GL_FLOAT, 44, rowPointer(0, 36));
  for (const auto& [method, usage] : {std::pair{kDrawArraysWithStaticVBO, GL_STATIC_DRAW},
                                      {kDrawArraysWithStatVertBufferObjectsVAO, GL_STATIC_DRAW},
                                      {kDrawArraysWithDynVertBufferObjectsVAO, GL_STREAM_DRAW}}) {
    test->setDrawMethod(method);
    const auto& [offsets, object, buffer, stride, byteSize] = test->getVertexBufferObjects()[0];
    const Calls bindBuffer = gl("BindBufferARB", GL_ARRAY_BUFFER, buffer);
    const Calls unbind = gl("BindBufferARB", GL_ARRAY_BUFFER, 0) + gl("BindVertexArray", 0);
    EXPECT_TRUE(takeCalls().ends_with(gl("BufferDataARB", GL_ARRAY_BUFFER, 4 * 44, 0, usage) +
                                      gl("MapBufferARB", GL_ARRAY_BUFFER, GL_WRITE_ONLY) +
                                      gl("UnmapBufferARB", GL_ARRAY_BUFFER) + unbind));
    test->drawUsingVertexBufferObjects(2);
    test->unbindRowBuffers();
    const Calls bind =
        method == kDrawArraysWithStaticVBO ? bindBuffer + pointers : gl("BindVertexArray", object);
    EXPECT_EQ(takeCalls(), repeat(2, bind + gl("DrawArrays", GL_TRIANGLE_STRIP, 0, 4)) + unbind);
  }
  const GLCoord2 last = test->getArrays().texCoords[2][3];
  EXPECT_EQ(fakeDriver.buffer[42], last.s);
  EXPECT_EQ(fakeDriver.buffer[43], last.t);
  fakeDriver.unmapSucceeds = false;
  EXPECT_EXIT(test->setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "^UnmapBufferARB failed!\n$");
  fakeDriver.buffer.clear();
  EXPECT_EXIT(test->setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "no memory for a buffer of 176 bytes");
}

TEST_F(Methods, RowsHoldEveryAttributeWhereItsPointerSays) {
  test->setDetail(2);
  test->setDrawMethod(kDrawArraysWithStaticVBO);
  const MeshArrays& a = test->getArrays();
  float* const floats = &a.vertices->x;  // all arrays lie in one block
  std::iota(floats, floats + 12UL * kBytesPerVertex / sizeof(float), 1.0F);
  for (unsigned long variant = 0; variant < 64; ++variant) {
    const auto bit = [=](int i) { return (variant >> i & 1) != 0; };
    const bool units[8] = {bit(3), bit(4), false, false, false, false, false, bit(5)};
    test->setNormals(bit(0));
    test->setColor(bit(1));
    test->setSecColor(bit(2));
    test->setTexturing(units);
    const VertexBufferRecord& row = test->getVertexBufferObjects()[1];  // mapped last
    const auto bytesOf = [](const auto* from) { return reinterpret_cast<const std::byte*>(from); };
    const auto expect = [&](bool sent, std::uint32_t offset, const auto* array) {
      for (std::size_t i = 0; sent && i < 6; ++i) {
        const std::byte* const wanted = bytesOf(array + 6 + i);
        EXPECT_TRUE(std::equal(wanted, wanted + sizeof *array,
                               bytesOf(fakeDriver.buffer.data()) + i * row.stride + offset))
            << variant;
      }
    };
    expect(true, row.offsets.vertexOffset, a.vertices);
    expect(bit(0), row.offsets.normalOffset, a.normals);
    expect(bit(1) && !bit(0), row.offsets.colorOffset, a.colors);
    expect(bit(2) && !bit(0), row.offsets.secondaryColorOffset, a.secondaryColors);
    for (std::size_t unit = 0; unit < 8; ++unit) {
      expect(units[unit], row.offsets.texCoordOffsets[unit], a.texCoords[unit]);
    }
  }
}

TEST_F(Methods, NativeRangesAndRowObjects) {
  setUpOn(kNative);
  test->setDetail(1);
  test->setNormals(true);
  test->setDrawMethod(kDrawArraysWithVertArrayRng);
  const auto* const block = test->getArrays().vertices;
  const Calls enable = gl("EnableClientState", GL_VERTEX_ARRAY_RANGE_APPLE);
  const Calls disable = gl("DisableClientState", GL_VERTEX_ARRAY_RANGE_APPLE);
  const Calls withdrawn = disable + gl("VertexArrayRangeAPPLE", 0, 0);
  Calls frame = drawFrame();
  EXPECT_TRUE(contains(frame, gl("VertexArrayRangeAPPLE", 4 * 116, block) + enable +
                                  gl("FlushVertexArrayRangeAPPLE", 4 * 116, block)));
  EXPECT_TRUE(frame.ends_with(withdrawn));

  test->setDrawMethod(kDrawArraysWithVertArrayObjects);
  const VertexArrayRecord& record = test->getVertexArrayObjects()[0];
  const std::byte* const data = record.data.get();
  const Calls bind = gl("BindVertexArrayAPPLE", record.vertexArrayObject);
  const Calls unbind = disable + gl("BindVertexArrayAPPLE", 0);
  EXPECT_EQ(
      takeCalls(),
      gl("GenVertexArraysAPPLE", 1, 17) + bind + gl("VertexArrayRangeAPPLE", 4 * 24, data) +
          gl("EnableClientState", GL_VERTEX_ARRAY) + gl("VertexPointer", 3, GL_FLOAT, 24, data) +
          gl("EnableClientState", GL_NORMAL_ARRAY) + gl("NormalPointer", GL_FLOAT, 24, data + 12) +
          gl("FlushVertexArrayRangeAPPLE", 4 * 24, data) + unbind);
  frame = drawFrame();
  EXPECT_TRUE(contains(frame, enable));
  EXPECT_TRUE(contains(frame, bind + gl("DrawArrays", GL_TRIANGLE_STRIP, 0, 4)));
  EXPECT_TRUE(frame.ends_with(unbind));
  test->deleteVertexArrayObjects();
  EXPECT_EQ(takeCalls(), withdrawn + gl("DeleteVertexArraysAPPLE", 1, 17));
}

TEST_F(Methods, KeepOnlyWhatTheyNeed) {
  const std::string arb = FakeDriver().extensions;
  for (const std::string& extensions : {std::string(kNative), arb, arb + " GL_AMD_pinned_memory"}) {
    setUpOn(extensions);
    test->setDetail(32);
    for (const DrawMethodTraits& method : kDrawMethods) {
      if (supportOf(*test, method.method).as == RunsAs::kRefused) {
        continue;
      }
      for (int i = 0; i < 2; ++i) {
        test->setDrawMethod(method.method);
        EXPECT_EQ(fakeDriver.names.size() > 16, method.rebuild != nullptr)
            << rowOf(method.method)->word;
        drawFrame();
      }
      test->setDrawMethod(kDrawArrays);
      EXPECT_EQ(fakeDriver.names.size(), 16U) << rowOf(method.method)->word;
    }
  }
}

}  // namespace
