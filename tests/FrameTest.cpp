// The GL calls of whole frames, in order, and the figure that a frame yields.
#include "tests/support/EngineTest.h"

namespace {

const Calls kUnitZero = {call("glActiveTextureARB", GL_TEXTURE0),
                         call("glClientActiveTextureARB", GL_TEXTURE0)};
const Calls kMeasured = {call("glFlush"), call("glFinish")};

Calls clear(double shade) {
  return {call("glClearColor", shade, shade, shade, 1),
          call("glClear", GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)};
}

TEST_F(EngineTest, PlainFrameOfDrawArrays) {
  test.setDetail(32);
  test.setDrawMethod(kDrawArrays);
  Calls model;
  for (int strip = 0; strip < 32; ++strip) {
    model.push_back(call("glDrawArrays", GL_TRIANGLE_STRIP, strip * 66, 66));
  }
  const Calls before = {
      call("glMatrixMode", GL_MODELVIEW), call("glLoadIdentity"), call("glEnable", GL_BLEND),
      call("glBlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA), call("glBindVertexArray", 0)};
  const Calls arrays = {call("glColor4f", 0.7F, 0.7F, 0.7F, 1),
                        call("glEnableClientState", GL_VERTEX_ARRAY),
                        call("glVertexPointer", 3, GL_FLOAT, 0, test.getArrays().vertices)};
  const Calls release = {call("glBindVertexArray", 0),
                         call("glDisableClientState", GL_VERTEX_ARRAY),
                         call("glDisable", GL_BLEND)};
  EXPECT_EQ(drawFrame(), before + repeat(8, {call("glColor4f", 1, 1, 1, 1)}) + kUnitZero + arrays +
                             clear(1) + repeat(10, model) + kMeasured + release + kUnitZero +
                             Calls{call("glDisable", GL_LIGHTING)});
}

TEST_F(EngineTest, LitTexturedThrashedRotatingFrame) {
  test.setDetail(32);
  test.setPrimitive(kQuads);
  test.setDrawMethod(kDrawCompiledVertArray);
  test.setNormals(true);
  test.setVertexColors(true);
  test.setSecColor(true);
  test.setTexturing(3, true);
  test.setLighting(5, true);
  test.setThrash(true);
  test.setRotate(true);
  test.setTextureCopies();

  const auto unit3 =
      Calls{call("glActiveTextureARB", GL_TEXTURE3), call("glClientActiveTextureARB", GL_TEXTURE3)};
  const Calls transform = {call("glTranslatef", 200, 200, 0),   call("glRotatef", 0, 1, 0, 0),
                           call("glRotatef", 0, 1, 0, 0),       call("glRotatef", -10, 1, 1, 1),
                           call("glTranslatef", -10, -10, -10), call("glRotatef", 1.5, 0, 0, 1),
                           call("glTranslatef", -200, -200, 0)};
  const Calls lights = {call("glEnable", GL_LIGHTING), call("glEnable", GL_LIGHT5),
                        call("glMaterialfv", GL_FRONT, GL_SPECULAR, 1, 1, 1, 1),
                        call("glMaterialfv", GL_FRONT, GL_SHININESS, 50)};
  const Calls afterLights = {call("glEnableClientState", GL_NORMAL_ARRAY),
                             call("glNormalPointer", GL_FLOAT, 0, test.getArrays().normals),
                             call("glColor4f", 0.7F, 0.7F, 0.7F, 1),
                             call("glColor4f", 1, 1, 1, 1),
                             call("glEnableClientState", GL_VERTEX_ARRAY),
                             call("glVertexPointer", 3, GL_FLOAT, 0, test.getArrays().vertices),
                             call("glLockArraysEXT", 0, 4 * 32 * 32)};
  const Calls model = {
      call("glPushAttrib", 0x000FFFFF),
      call("glDrawElements", GL_QUADS, 4 * 32 * 32, GL_UNSIGNED_INT, test.getIndices().data()),
      call("glPopAttrib")};
  const Calls release = {call("glDisable", GL_LIGHT5),
                         call("glDisable", GL_LIGHTING),
                         call("glDisableClientState", GL_NORMAL_ARRAY),
                         call("glDisableClientState", GL_COLOR_ARRAY),
                         call("glDisable", GL_COLOR_SUM),
                         call("glDisableClientState", GL_SECONDARY_COLOR_ARRAY),
                         call("glUnlockArraysEXT")};

  const Calls frame = drawFrame();
  const auto contains = [&](const Calls& part) {
    return std::search(frame.begin(), frame.end(), part.begin(), part.end()) != frame.end();
  };
  EXPECT_TRUE(contains(transform));
  EXPECT_TRUE(contains(Calls{call("glColor4f", 1, 1, 1, 1)} + unit3 +
                       Calls{call("glEnableClientState", GL_TEXTURE_COORD_ARRAY)}));
  EXPECT_TRUE(contains({call("glTexEnvi", GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL),
                        call("glTexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR),
                        call("glTexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                        call("glEnable", GL_TEXTURE_2D),
                        call("glTexCoordPointer", 2, GL_FLOAT, 0, test.getArrays().texCoords[3])}));
  EXPECT_TRUE(contains(lights));
  EXPECT_TRUE(contains({call("glLightfv", GL_LIGHT7, GL_POSITION, 10.60660171508789F,
                             -10.60660171508789F, 800, 0)}));
  EXPECT_TRUE(contains(afterLights + clear(0) + repeat(10, model) + kMeasured));
  EXPECT_TRUE(contains(unit3 +
                       Calls{call("glDisableClientState", GL_TEXTURE_COORD_ARRAY),
                             call("glDisable", GL_TEXTURE_2D)} +
                       kUnitZero + release));
  EXPECT_EQ(countOf(frame, "glColorPointer") + countOf(frame, "glSecondaryColorPointer"), 0U);
  EXPECT_EQ(countOf(frame, "glLightfv"), 8U);
  EXPECT_EQ(countOf(frame, "glCopyTexImage2D"), 3U);

  const Calls next = drawFrame();
  EXPECT_EQ(std::count(next.begin(), next.end(), call("glTranslatef", 10, 10, 10)), 1);
  EXPECT_EQ(std::count(next.begin(), next.end(), clear(1)[0]), 1);
}

TEST_F(EngineTest, ColorArraysAndCurrentColorWithoutNormals) {
  test.setColor(true);
  test.setSecColor(true);
  const MeshArrays& a = test.getArrays();
  const Calls frame = drawFrame();
  const Calls bound = {
      call("glEnableClientState", GL_COLOR_ARRAY), call("glColorPointer", 3, GL_FLOAT, 0, a.colors),
      call("glEnable", GL_COLOR_SUM), call("glEnableClientState", GL_SECONDARY_COLOR_ARRAY),
      call("glSecondaryColorPointer", 3, GL_FLOAT, 0, a.secondaryColors)};
  EXPECT_NE(std::search(frame.begin(), frame.end(), bound.begin(), bound.end()), frame.end());

  test.setColor(false);
  const auto black = call("glColor4f", 0, 0, 0, 1);
  Calls secondaryOnly = drawFrame();
  EXPECT_EQ(std::count(secondaryOnly.begin(), secondaryOnly.end(), black), 1);
  test.setTexturing(0, true);
  secondaryOnly = drawFrame();
  EXPECT_EQ(std::count(secondaryOnly.begin(), secondaryOnly.end(), black), 0);
}

TEST_F(EngineTest, FigureIsPrimitivesPerMicrosecond) {
  test.setDrawMethod(kDrawArrays);
  fakeClock.step = 50000;  // two passes of ten repetitions in 150000 microseconds
  test.draw();
  EXPECT_FLOAT_EQ(test.performance(), 8192.0F * 20 / 150000);
  test.setPrimitive(kQuadStrip);
  test.draw();
  EXPECT_FLOAT_EQ(test.performance(), 4096.0F * 20 / 150000);
  EXPECT_EQ(history.getSampleCount(), 1);

  for (const auto& [detail, reps] : {std::pair{1U, 2000}, {30U, 11}, {31U, 10}, {64U, 10}}) {
    test.setDetail(detail);
    EXPECT_EQ(countOf(drawFrame(), "glDrawArrays"), detail * static_cast<unsigned>(reps));
  }
}

TEST(SorvantaTestBeforeSetUp, DrawsNothing) {
  PerformanceHistory history;
  SorvantaTest test(&history);
  takeCalls();
  test.draw();
  test.drawUsingArrays(1);
  test.drawUsingElements(1);
  test.drawUsingArrayElements(1);
  test.setDetail(3);
  EXPECT_EQ(takeCalls(), Calls());
  EXPECT_EQ(history.getSampleCount(), 0);
  test.setBounds(640, 480);
  EXPECT_EQ(takeCalls().back().name, "glLoadIdentity");
}

}  // namespace
