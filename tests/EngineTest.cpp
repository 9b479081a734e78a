// The GL calls of whole frames and of every method's own operations, and the settings.
#include "tests/support/EngineTest.h"

#include <regex>

#include "engine/ImmediateModeFamily.h"
#include "platform/gl/Driver.h"

namespace {

/// A driver that has the vertex array extensions themselves.
constexpr const char* kNative =
    "GL_APPLE_vertex_array_object GL_APPLE_vertex_array_range GL_ARB_vertex_buffer_object";

Calls activeUnit(GLenum unit) {
  return gl("ActiveTextureARB", unit) + gl("ClientActiveTextureARB", unit);
}

const Calls kWhite = gl("Color4f", 1, 1, 1, 1);
const Calls kGrey = gl("Color4f", 0.7F, 0.7F, 0.7F, 1);
const Calls kPush = gl("PushAttrib", 0xFFFFF);
const Calls kPop = gl("PopAttrib");
const Calls kStart = gl("MatrixMode", GL_MODELVIEW) + gl("LoadIdentity");

TEST_F(EngineTest, LitTexturedThrashedRotatingFrame) {
  apply("-d 32 -p quads -M compiledVertArray -n -c -s -t3 -l5 -T -A -u");
  int frames = 1;  // Two kinds of frame alternate in a process: this one is of the first kind.
  while (!contains(drawFrame(), gl("ClearColor", 1, 1, 1, 1))) {
    ++frames;
  }
  const MeshArrays& a = test.getArrays();
  const Calls before =
      kStart + gl("Translatef", 200, 200, 0) + repeat(2, gl("Rotatef", 0, 1, 0, 0)) +
      gl("Rotatef", -10, 1, 1, 1) + gl("Translatef", -10, -10, -10) +
      gl("Rotatef", 1.5 * (frames + 1), 0, 0, 1) + gl("Translatef", -200, -200, 0) +
      gl("Enable", GL_BLEND) + gl("BlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA) +
      gl("BindVertexArray", 0) + repeat(4, kWhite) + activeUnit(GL_TEXTURE3) +
      gl("EnableClientState", GL_TEXTURE_COORD_ARRAY) +
      gl("TexEnvi", GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL) +
      gl("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR) +
      gl("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR) +
      gl("Enable", GL_TEXTURE_2D) + gl("TexCoordPointer", 2, GL_FLOAT, 0, a.texCoords[3]) +
      repeat(4, kWhite) + activeUnit(GL_TEXTURE0) + gl("Enable", GL_LIGHTING) +
      gl("Enable", GL_LIGHT5) + gl("Materialfv", GL_FRONT, GL_SPECULAR, 1) +
      gl("Materialfv", GL_FRONT, GL_SHININESS, 50) + gl("EnableClientState", GL_NORMAL_ARRAY) +
      gl("NormalPointer", GL_FLOAT, 0, a.normals) + kGrey + kWhite +
      gl("EnableClientState", GL_VERTEX_ARRAY) + gl("VertexPointer", 3, GL_FLOAT, 0, a.vertices) +
      gl("LockArraysEXT", 0, 4096);
  const Calls model = gl("DrawElements", GL_QUADS, 4096, GL_UNSIGNED_INT, test.getIndices().data());
  const Calls after =
      repeat(3, gl("CopyTexImage2D", GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 512, 512, 0)) +
      gl("BindVertexArray", 0) + gl("DisableClientState", GL_VERTEX_ARRAY) +
      gl("Disable", GL_BLEND) + activeUnit(GL_TEXTURE3) +
      gl("DisableClientState", GL_TEXTURE_COORD_ARRAY) + gl("Disable", GL_TEXTURE_2D) +
      activeUnit(GL_TEXTURE0) + gl("Disable", GL_LIGHT5) + gl("Disable", GL_LIGHTING) +
      gl("DisableClientState", GL_NORMAL_ARRAY) + gl("DisableClientState", GL_COLOR_ARRAY) +
      gl("Disable", GL_COLOR_SUM) + gl("DisableClientState", GL_SECONDARY_COLOR_ARRAY) +
      gl("UnlockArraysEXT");
  const Calls frame = drawFrame();
  Calls positions;
  for (const char* place : {"15 0", "10.6066 10.6066", "0 15", "-10.6066 10.6066", "-15 0",
                            "-10.6066 -10.6066", "0 -15", "10.6066 -10.6066"}) {
    positions += gl("Lightfv", GL_LIGHT0 + countOf(positions, "gl"), GL_POSITION, place, 800, 0);
  }
  EXPECT_TRUE(contains(frame, positions));
  EXPECT_EQ(countOf(frame, "glBindTexture"), 4);
  EXPECT_EQ(std::regex_replace(frame, std::regex("gl(Lightfv|BindTexture).*\n"), ""),
            before + gl("ClearColor", 0, 0, 0, 1) + gl("Clear", 0x4100) +
                repeat(10, kPush + model + kPop) + gl("Flush") + gl("Finish") + after);
  EXPECT_TRUE(contains(drawFrame(), gl("Translatef", 10, 10, 10)));
}

TEST_F(EngineTest, CurrentColorDependsOnWhatElseColors) {
  for (const auto& [option, colors] :
       {std::pair{"", gl("ClientActiveTextureARB", GL_TEXTURE0) + kGrey},
        {"-s", kGrey + gl("Color4f", 0, 0, 0, 1)},
        {"-t0", kGrey},
        {"-c", kGrey + kWhite}}) {
    apply(option);
    EXPECT_TRUE(contains(drawFrame(), colors + gl("EnableClientState", GL_VERTEX_ARRAY))) << option;
  }
}

TEST_F(EngineTest, FigureIsPrimitivesPerMicrosecond) {
  apply("-M drawArrays -d 64");
  fakeClock.step = 50000;  // two passes of ten repetitions in 150000 microseconds
  test.draw();
  EXPECT_FLOAT_EQ(test.performance(), 8192.0F * 20 / 150000);
  test.setPrimitive(kQuadStrip);
  test.draw();
  EXPECT_FLOAT_EQ(test.performance(), 4096.0F * 20 / 150000);
  for (const auto& [detail, reps] : {std::pair{1, 2000}, {30, 11}, {31, 10}, {64, 10}}) {
    apply("-d " + std::to_string(detail));
    EXPECT_EQ(countOf(drawFrame(), "glDrawArrays"), detail * reps);
  }
}

TEST_F(EngineTest, SetUpComesBeforeDrawingAndTheProjectionLooksStraightDown) {
  SorvantaTest unready(&history);
  unready.draw();
  unready.drawUsingArrays(1);
  unready.drawUsingElements(1);
  unready.drawUsingArrayElements(1);
  EXPECT_EQ(takeCalls(), "");
  unready.reshape();
  const Calls setUp = takeCalls();
  EXPECT_EQ(countOf(setUp, "glTexImage2D"), 16);
  Calls diffuse;
  for (const char* color : {"0.8 0.8 0.8", "0.8 0 0", "0 0 0.8", "0 0.8 0", "0.8 0 0", "0 0 0.8",
                            "0 0.8 0", "0.8 0 0"}) {
    diffuse += gl("Lightfv", GL_LIGHT0 + countOf(diffuse, "gl"), GL_DIFFUSE, color, 1);
  }
  EXPECT_TRUE(contains(setUp, diffuse));
  const Calls projection = gl("Viewport", 0, 0, 640, 480) + gl("MatrixMode", GL_PROJECTION) +
                           gl("LoadIdentity") + gl("uPerspective", 53.2F, 1, 0.1F, 1000) +
                           gl("uLookAt", 200, 200, 400, 200, 200, 0, 0, 1, 0);
  test.setZoom(-20);
  test.setBounds(640, 480);
  EXPECT_EQ(takeCalls(), projection + kStart);
  test.setDrawsOffscreen(true);
  EXPECT_EQ(takeCalls(), projection + gl("Translatef", 0, 0, 500) + kStart);
}

TEST_F(EngineTest, SettingsClearTheHistoryUnlessNothingChanges) {
  const std::pair<const char*, bool> settings[] = {
      {"-d 0", true}, {"-d 1", false}, {"-T", true},  {"-A", true},    {"-m", true}, {"-z 0", true},
      {"-l2", true},  {"-t2", true},   {"-u", false}, {"-avg", false}, {"-o", true}};
  for (const auto& [option, clears] : settings) {
    history.addSample(1);
    apply(option);
    EXPECT_EQ(history.getSampleCount() == 0, clears) << option;
  }
  EXPECT_EQ(test.modelVertexCount(), 4U);
  test.getArrays().colors[0].x = 7;
  test.setColor(true);
  EXPECT_EQ(test.getArrays().colors[0].x, 7);  // sent, not written
  test.setVertexColors(false);
  EXPECT_FALSE(test.getColor());
  const bool all[8] = {true, true, true, true, true, true, true, true};
  fakeDriver.integers[GL_MAX_TEXTURE_UNITS] = 9;
  EXPECT_DEATH(test.setTexturing(all),
               "Settings.cpp:[0-9]+: failed assertion `textureUnitCount.. <= kTextureUnitCount'");
  EXPECT_DEATH(SorvantaTest(nullptr), "failed assertion `perfHistory'");
}

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

TEST_F(EngineTest, EmittersSendWhatIsWanted) {
  apply("-d 2 -T");
  const MeshArrays& a = test.getArrays();
  auto texCoords = a.texCoords;
  const auto run = [&](auto function, unsigned long variant) {
    return function(variant, 2, GL_TRIANGLE_STRIP, a.vertices, a.colors, a.secondaryColors,
                    a.normals, texCoords.data());
  };
  for (unsigned long variant = 0; variant < 64; ++variant) {
    const auto bit = [=](int i) { return (variant >> i & 1) != 0; };
    const bool units[8] = {bit(3), bit(4), false, false, false, false, false, bit(5)};
    test.setNormals(bit(0));
    test.setColor(bit(1));
    test.setSecColor(bit(2));
    test.setTexturing(units);
    for (const bool macros : {false, true}) {
      test.setMacros(macros);
      test.drawImmediateMode(2);
      EXPECT_EQ(takeCalls(), repeat(2, kPush + strips(variant, macros, true, a) + kPop)) << variant;
      EXPECT_TRUE(run(macros ? DoImmediateModeMacro : DoImmediateMode, variant));
      EXPECT_EQ(takeCalls(), strips(variant, macros, false, a)) << variant;
    }
  }
  EXPECT_FALSE(run(DoImmediateMode, 64) || run(DoImmediateModeMacro, 64));
}

TEST_F(EngineTest, OperationsTakeEitherPathAndThrash) {
  apply("-d 2 -T");
  for (const std::string path : {"context ", "gl"}) {
    test.setMacros(path != "gl");
    const Calls fetch = path == "gl" ? "" : "CGLGetCurrentContext\n";
    // A list is compiled with direct calls.
    const GLuint list = fakeDriver.nextName;
    test.setDrawMethod(kDrawDisplayLists);
    EXPECT_EQ(takeCalls(), gl("GenLists", 1, list) + gl("NewList", list, GL_COMPILE) +
                               strips(0, false, true, test.getArrays()) + gl("EndList"));
    test.drawDisplayList(2);
    EXPECT_EQ(takeCalls(), fetch + repeat(2, kPush + call(path + "CallList", list) + kPop));
    test.setDrawMethod(kDrawArrays);
    EXPECT_EQ(takeCalls(), gl("DeleteLists", list, 1));
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
    test.drawUsingArrays(2);
    test.drawUsingArrayElements(2);
    EXPECT_EQ(takeCalls(), fetch + repeat(2, kPush + arrays + kPop) + fetch +
                               repeat(2, kPush + elements + kPop));
  }
}

TEST_F(EngineTest, BuffersAreBuiltDrawnAndReleased) {
  apply("-d 1 -c -t2");
  const Calls pointers = gl("VertexPointer", 3, GL_FLOAT, 32, 0) +
                         gl("ColorPointer", 3, GL_FLOAT, 32, rowPointer(0, 12)) +
                         activeUnit(GL_TEXTURE2) +
                         gl("TexCoordPointer", 2, GL_FLOAT, 32, rowPointer(0, 24));
  for (const auto& [method, usage] : {std::pair{kDrawArraysWithStaticVBO, GL_STATIC_DRAW},
                                      {kDrawArraysWithStatVertBufferObjectsVAO, GL_STATIC_DRAW},
                                      {kDrawArraysWithDynVertBufferObjectsVAO, GL_STREAM_DRAW}}) {
    test.setDrawMethod(method);
    const auto& [offsets, object, buffer, stride, byteSize] = test.getVertexBufferObjects()[0];
    const Calls bindBuffer = gl("BindBufferARB", GL_ARRAY_BUFFER, buffer);
    const Calls unbind = gl("BindBufferARB", GL_ARRAY_BUFFER, 0) + gl("BindVertexArray", 0);
    EXPECT_TRUE(takeCalls().ends_with(gl("BufferDataARB", GL_ARRAY_BUFFER, 4 * 32, 0, usage) +
                                      gl("MapBufferARB", GL_ARRAY_BUFFER, GL_WRITE_ONLY) +
                                      gl("UnmapBufferARB", GL_ARRAY_BUFFER) + unbind));
    test.drawUsingVertexBufferObjects(2);
    test.unbindRowBuffers();
    const Calls bind =
        method == kDrawArraysWithStaticVBO ? bindBuffer + pointers : gl("BindVertexArray", object);
    EXPECT_EQ(takeCalls(), repeat(2, bind + gl("DrawArrays", GL_TRIANGLE_STRIP, 0, 4)) + unbind);
  }
  fakeDriver.unmapSucceeds = false;
  EXPECT_EXIT(test.setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "^UnmapBufferARB failed!\n$");
  fakeDriver.buffer.clear();
  EXPECT_EXIT(test.setDrawMethod(kDrawArraysWithStaticVBO), testing::ExitedWithCode(1),
              "no memory for a buffer of 128 bytes");
}

TEST_F(EngineTest, NativeRangesAndRowObjects) {
  setUpOn(kNative);
  apply("-d 1 -n -M drawArraysWithVertArrayRng");
  const auto* const block = test.getArrays().vertices;
  const Calls enable = gl("EnableClientState", GL_VERTEX_ARRAY_RANGE_APPLE);
  const Calls disable = gl("DisableClientState", GL_VERTEX_ARRAY_RANGE_APPLE);
  const Calls withdrawn = disable + gl("VertexArrayRangeAPPLE", 0, 0);
  Calls frame = drawFrame();
  EXPECT_TRUE(contains(frame, gl("VertexArrayRangeAPPLE", 4 * 116, block) + enable +
                                  gl("FlushVertexArrayRangeAPPLE", 4 * 116, block)));
  EXPECT_TRUE(frame.ends_with(withdrawn));

  test.setDrawMethod(kDrawArraysWithVertArrayObjects);
  const VertexArrayRecord& record = test.getVertexArrayObjects()[0];
  const GLuint name = record.vertexArrayObject;
  const std::byte* const data = record.data.get();
  const Calls bind = gl("BindVertexArrayAPPLE", name);
  const Calls unbind = disable + gl("BindVertexArrayAPPLE", 0);
  EXPECT_EQ(
      takeCalls(),
      gl("GenVertexArraysAPPLE", 1, name) + bind + gl("VertexArrayRangeAPPLE", 4 * 24, data) +
          gl("EnableClientState", GL_VERTEX_ARRAY) + gl("VertexPointer", 3, GL_FLOAT, 24, data) +
          gl("EnableClientState", GL_NORMAL_ARRAY) + gl("NormalPointer", GL_FLOAT, 24, data + 12) +
          gl("FlushVertexArrayRangeAPPLE", 4 * 24, data) + unbind);
  frame = drawFrame();
  EXPECT_TRUE(contains(frame, enable));
  EXPECT_TRUE(contains(frame, bind + gl("DrawArrays", GL_TRIANGLE_STRIP, 0, 4)));
  EXPECT_TRUE(frame.ends_with(unbind));
  test.deleteVertexArrayObjects();
  EXPECT_EQ(takeCalls(), withdrawn + gl("DeleteVertexArraysAPPLE", 1, name));
}

TEST_F(EngineTest, RebuildsLeaveNoNames) {
  const std::string arb = FakeDriver().extensions;
  for (const std::string& extensions : {std::string(kNative), arb, arb + " GL_AMD_pinned_memory"}) {
    setUpOn(extensions);
    apply("-d 32");
    for (const DrawMethodTraits& method : kDrawMethods) {
      Calls all;
      for (int i = 0; i < 100; ++i) {
        test.setDrawMethod(method.method);
        all += i % 50 == 49 ? drawFrame() : takeCalls();
      }
      test.setDrawMethod(kDrawArrays);
      all += takeCalls();
      for (const Calls kind : {"BuffersARB", "Lists", "VertexArrays"}) {
        EXPECT_EQ(countOf(all, "glGen" + kind), countOf(all, "glDelete" + kind)) << method.word;
      }
      EXPECT_GE(countOf(all, "glGen"), method.rebuild != nullptr ? 100 : 0) << method.word;
    }
  }
}

TEST_F(EngineTest, ProvidersFollowTheDriver) {
  const std::tuple<const char*, RangeProvider, unsigned int> drivers[] = {
      {kNative, RangeProvider::kNative, 1 << 20},
      {"GL_AMD_pinned_memory GL_ARB_vertex_buffer_object", RangeProvider::kPinned, 18512790},
      {"GL_AMD_pinned_memory_ GL_ARB_vertex_buffer_object", RangeProvider::kFilled, 18512790},
      {"GL_APPLE_vertex_array_range", RangeProvider::kNative, 1 << 20},
      // Rows in native ranges would be client memory, which these objects do not take.
      {"GL_APPLE_vertex_array_range GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object",
       RangeProvider::kFilled, 18512790},
      {"", RangeProvider::kNone, 0}};
  for (const auto& [extensions, provider, most] : drivers) {
    setUpOn(extensions);
    EXPECT_EQ(driver().rangeProvider, provider) << extensions;
    EXPECT_EQ(test.maxVertexArraySize(), most) << extensions;
  }
  apply("-M drawArraysWithVertArrayRng");
  EXPECT_EQ(countOf(drawFrame(), "glGenBuffersARB"), 0);
  forceRangeProvider(RangeProvider::kFilled);
  fakeDriver.integers[GL_BUFFER_SIZE] = 0;
  EXPECT_EXIT(drawFrame(), testing::ExitedWithCode(1), "no memory for a buffer of 965120 bytes");
  EXPECT_STREQ(traitsOf(kDrawArraysWithStaticVBO).missing(driver()), "vertex buffer objects");
  EXPECT_STREQ(traitsOf(kDrawArraysWithVertArrayObjects).missing(driver()), "vertex array objects");
  EXPECT_EXIT(apply("-M compiledVertArray"), testing::ExitedWithCode(1),
              "this OpenGL driver has no compiled vertex arrays, which the method "
              "compiledVertArray draws with");
}

}  // namespace
