// Settings, their limits, what they rebuild, and the projection.
#include "tests/support/EngineTest.h"

namespace {

TEST_F(EngineTest, DetailIsClampedAndAnUnchangedOneTouchesNothing) {
  test.setDetail(0);
  EXPECT_EQ(test.getDetail(), 1U);
  EXPECT_EQ(test.modelVertexCount(), 4U);
  history.addSample(1);
  const GLCoord3* const vertices = test.getArrays().vertices;
  test.setDetail(0);
  EXPECT_EQ(test.getArrays().vertices, vertices);
  EXPECT_EQ(history.getSampleCount(), 1);
  test.setDetail(64);
  EXPECT_EQ(history.getSampleCount(), 0);
  EXPECT_FLOAT_EQ(test.getTriArea(), 9.5703125F);
  EXPECT_EQ(test.getIndices().size(), 8320U);
  EXPECT_EQ(test.getIndices().back(), 8319U);
}

TEST_F(EngineTest, OnlySomeSettingsLeaveTheHistory) {
  const auto clears = [this](auto set) {
    history.addSample(1);
    set(test);
    return history.getSampleCount() == 0;
  };
  EXPECT_TRUE(clears([](auto& t) { t.setThrash(true); }));
  EXPECT_TRUE(clears([](auto& t) { t.setRotate(true); }));
  EXPECT_TRUE(clears([](auto& t) { t.setMacros(true); }));
  EXPECT_TRUE(clears([](auto& t) { t.setZoom(0); }));
  EXPECT_TRUE(clears([](auto& t) { t.setLighting(2, true); }));
  EXPECT_TRUE(clears([](auto& t) { t.setDrawsOffscreen(true); }));
  EXPECT_FALSE(clears([](auto& t) { t.setTextureCopies(); }));
  EXPECT_FALSE(clears([](auto& t) { t.setBounds(3, 4); }));
}

TEST_F(EngineTest, ColorSettings) {
  test.setVertexColors(true);
  EXPECT_TRUE(test.getColor());
  test.setVertexColors(false);
  EXPECT_FALSE(test.getColor());
  GLCoord3& color = test.getArrays().colors[0];
  color = {7, 8, 9};
  test.setColor(true);
  EXPECT_EQ(color.x, 7);  // sent, not written
}

TEST_F(EngineTest, FlagArraysStopAtTheDriversLimit) {
  fakeDriver.integers[GL_MAX_TEXTURE_UNITS] = 4;
  const bool all[8] = {true, true, true, true, true, true, true, true};
  test.setTexturing(all);
  EXPECT_EQ(countOf(drawFrame(), "glTexCoordPointer"), 4U);
  fakeDriver.integers[GL_MAX_TEXTURE_UNITS] = 9;
  EXPECT_DEATH(test.setTexturing(all),
               "Settings.cpp:[0-9]+: failed assertion `textureUnitCount\\(\\) <= "
               "kTextureUnitCount'");
  EXPECT_DEATH(SorvantaTest(nullptr), "failed assertion `perfHistory'");
}

TEST_F(EngineTest, ProjectionLooksStraightDown) {
  const Calls projection = {call("glViewport", 0, 0, 640, 480), call("glMatrixMode", GL_PROJECTION),
                            call("glLoadIdentity"), call("gluPerspective", 53.2F, 1, 0.1F, 1000),
                            call("gluLookAt", 200, 200, 400, 200, 200, 0, 0, 1, 0)};
  const Calls modelView = {call("glMatrixMode", GL_MODELVIEW), call("glLoadIdentity")};
  test.setZoom(-20);
  takeCalls();
  test.setBounds(640, 480);
  EXPECT_EQ(takeCalls(), projection + modelView);
  test.setDrawsOffscreen(true);
  EXPECT_EQ(takeCalls(), projection + Calls{call("glTranslatef", 0, 0, 500)} + modelView);
}

TEST_F(EngineTest, SetUpMakesTexturesAndLights) {
  test.initGL();
  const Calls setUp = takeCalls();
  EXPECT_EQ(countOf(setUp, "glTexImage2D"), 16U);
  EXPECT_EQ(setUp.back(), call("glLightfv", GL_LIGHT7, GL_DIFFUSE, 0.8F, 0, 0, 1));
  const auto depth = std::find(setUp.begin(), setUp.end(), call("glDisable", GL_DEPTH_TEST));
  EXPECT_EQ(setUp.end() - depth, 9);
}

}  // namespace
