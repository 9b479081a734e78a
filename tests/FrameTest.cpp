// The calls of whole frames, and the figure.
#include <regex>

#include "tests/support/EngineTest.h"

namespace {

const Calls kWhite = gl("Color4f", 1, 1, 1, 1);
const Calls kGrey = gl("Color4f", 0.7F, 0.7F, 0.7F, 1);

using Frame = EngineTest;

TEST_F(Frame, LitTexturedThrashedRotating) {
  test->setDetail(32);
  test->setPrimitive(kQuads);
  test->setDrawMethod(kDrawCompiledVertArray);
  test->setNormals(true);
  test->setColor(true);
  test->setSecColor(true);
  test->setTexturing(3, true);
  test->setLighting(5, true);
  test->setThrash(true);
  test->setRotate(true);
  test->setTextureCopies();
  int frames = 1;  // Two kinds of frame alternate in a process: this one is of the first kind.
  while (!contains(drawFrame(), gl("ClearColor", 1, 1, 1, 1))) {
    ++frames;
  }
  const MeshArrays& a = test->getArrays();
  const Calls before =
      gl("MatrixMode", GL_MODELVIEW) + gl("LoadIdentity") + gl("Translatef", 200, 200, 0) +
      repeat(2, gl("Rotatef", 0, 1, 0, 0)) + gl("Rotatef", -10, 1, 1, 1) +
      gl("Translatef", -10, -10, -10) + gl("Rotatef", 1.5 * (frames + 1), 0, 0, 1) +
      gl("Translatef", -200, -200, 0) + gl("Enable", GL_BLEND) +
      gl("BlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA) + gl("BindVertexArray", 0) +
      repeat(4, kWhite) + activeUnit(GL_TEXTURE3) +
      gl("EnableClientState", GL_TEXTURE_COORD_ARRAY) + gl("BindTexture", GL_TEXTURE_2D, 4) +
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
  const Calls model =
      gl("DrawElements", GL_QUADS, 4096, GL_UNSIGNED_INT, test->getIndices().data());
  Calls after;
  for (const int copy : {9, 10, 11}) {
    after += gl("BindTexture", GL_TEXTURE_2D, copy) +
             gl("CopyTexImage2D", GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 512, 512, 0);
  }
  after += gl("BindVertexArray", 0) + gl("DisableClientState", GL_VERTEX_ARRAY) +
           gl("Disable", GL_BLEND) + activeUnit(GL_TEXTURE3) +
           gl("DisableClientState", GL_TEXTURE_COORD_ARRAY) + gl("Disable", GL_TEXTURE_2D) +
           activeUnit(GL_TEXTURE0) + gl("Disable", GL_LIGHT5) + gl("Disable", GL_LIGHTING) +
           gl("DisableClientState", GL_NORMAL_ARRAY) + gl("DisableClientState", GL_COLOR_ARRAY) +
           gl("Disable", GL_COLOR_SUM) + gl("DisableClientState", GL_SECONDARY_COLOR_ARRAY) +
           gl("UnlockArraysEXT");
  Calls positions;
  for (const char* place : {"15 0", "10.6066 10.6066", "0 15", "-10.6066 10.6066", "-15 0",
                            "-10.6066 -10.6066", "0 -15", "10.6066 -10.6066"}) {
    positions += gl("Lightfv", GL_LIGHT0 + countOf(positions, "gl"), GL_POSITION, place, 800, 0);
  }
  const Calls frame = drawFrame();
  EXPECT_TRUE(contains(frame, gl("Materialfv", GL_FRONT, GL_SHININESS, 50) + positions));
  EXPECT_EQ(std::regex_replace(frame, std::regex("glLightfv.*\n"), ""),
            before + gl("ClearColor", 0, 0, 0, 1) + gl("Clear", 0x4100) +
                repeat(10, thrashed(model)) + gl("Flush") + gl("Finish") + after);
  EXPECT_TRUE(contains(drawFrame(), gl("Translatef", 10, 10, 10)));
  for (frames += 3; !contains(drawFrame(), gl("Rotatef", 360, 0, 0, 1)); ++frames) {
  }
  EXPECT_EQ(frames, 240);
  EXPECT_TRUE(contains(drawFrame(), gl("Rotatef", 1.5, 0, 0, 1)));
  drawFrame();  // of the second kind, for whatever test comes next
}

TEST_F(Frame, CurrentColorDependsOnWhatElseColors) {
  const auto expect = [this](const Calls& colors) {
    EXPECT_TRUE(contains(drawFrame(), colors + gl("EnableClientState", GL_VERTEX_ARRAY)));
  };
  test->setDrawMethod(kDrawArrays);
  expect(gl("ClientActiveTextureARB", GL_TEXTURE0) + kGrey);
  test->setSecColor(true);
  expect(kGrey + gl("Color4f", 0, 0, 0, 1));
  test->setTexturing(7, true);
  expect(gl("SecondaryColorPointer", 3, GL_FLOAT, 0, test->getArrays().secondaryColors) + kGrey);
  test->setNormals(true);
  expect(kGrey + kWhite);
}

/// Takes a second of its own before and after the measured region.
struct Watch : FrameObserver {
  Calls before, measured;
  void measuringBegins() override {
    before = takeCalls();
    fakeClock.now += 1'000'000;
  }
  void measuringEnded() override {
    measured = takeCalls();
    fakeClock.now += 1'000'000;
  }
};

TEST_F(Frame, MeasuresFromTheFirstCallToTheEndOfFinish) {
  test->setDrawMethod(kDrawArrays);
  test->setTexturing(0, true);
  test->setTextureCopies();
  for (const char* unmeasured : {"glClear", "glCopyTexImage2D", "glVertexPointer", "glDisable"}) {
    fakeDriver.takes[unmeasured] = 1'000'000;
  }
  fakeDriver.takes["glDrawArrays"] = 50;  // 640 of them are a pass of 32 + 18 milliseconds
  fakeDriver.takes["glFlush"] = 18000;
  fakeDriver.takes["glFinish"] = 20000;
  test->draw();
  EXPECT_FLOAT_EQ(history.getLastSample(), 8192.0F * 20 / 120000);
  fakeDriver.takes["glFlush"] = 17999;
  test->setPrimitive(kQuadStrip);
  test->draw();
  EXPECT_FLOAT_EQ(history.getLastSample(), 4096.0F * 30 / (3 * 49999 + 20000));
  EXPECT_EQ(history.getSampleCount(), 1);
  Watch watch;
  test->setFrameObserver(&watch);
  test->setDetail(32);
  test->setLeastMeasuredTime(30000);
  fakeDriver.takes["glDrawArrays"] = 0;
  test->draw();
  EXPECT_TRUE(watch.before.ends_with(gl("Clear", 0x4100)));
  EXPECT_EQ(countOf(watch.measured, "gl"), 640 + 2 + 1);
  EXPECT_EQ(test->lastFrame().primitives, 1024U * 20);
  EXPECT_EQ(test->lastFrame().microseconds, 55998U);
  test->setFrameObserver(nullptr);
  test->draw();
  EXPECT_EQ(history.getSampleCount(), 2);

  history.clearSamples();
  for (const float sample : {100, 3, 1, 90, 7, 6}) {
    history.addSample(sample);
  }
  EXPECT_EQ(test->performance(), 6.5F);
}

TEST_F(Frame, RepeatsTheModelForTwentyThousandTrianglesOrTenTimes) {
  test->setDrawMethod(kDrawArrays);
  for (const auto& [detail, reps] : {std::pair{1, 2000}, {4, 625}, {30, 11}, {31, 10}, {64, 10}}) {
    test->setDetail(static_cast<unsigned int>(detail));
    EXPECT_EQ(countOf(drawFrame(), "glDrawArrays"), detail * reps);
  }
}

}  // namespace
