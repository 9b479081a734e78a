// The one-time set-up, and the projection.
#include "tests/support/EngineTest.h"

namespace {

using GlSetup = EngineTest;

TEST_F(GlSetup, MakesTexturesAndLightsAndPrintsABlank) {
  const Calls setUp = setUpOn(FakeDriver().extensions);
  EXPECT_TRUE(setUp.starts_with(' ' + gl("ClearColor", 0, 0, 0, 1) + gl("Clear", 0x4100) +
                                gl("Finish") + gl("GenTextures", 8, 1) + gl("GenTextures", 8, 9)));
  int names = 0;
  for (auto at = setUp.find("glTexImage2D"); at != Calls::npos;
       at = setUp.find("glTexImage2D", at + 1)) {
    const Calls bind = gl("BindTexture", GL_TEXTURE_2D, ++names);
    EXPECT_EQ(setUp.rfind("glBindTexture", at), setUp.rfind(bind, at)) << names;
  }
  EXPECT_EQ(names, 16);
  const std::string font = "Helvetica 36 128 128 ";
  EXPECT_EQ(fakeServices.drawn,
            (std::vector<std::string>{font + "1 0 0 [1  1  1\n  1  1  1\n 1  1  1]",
                                      font + "0 0 1 [ 2 2 2 2 2 2 2 2 2 2 2 2 2 2]",
                                      font + "0 1 0 [3 3 3 3\n 3 3 3 3\n3 3 3 3 3 3 3 3 3 3 3 3]",
                                      font + "1 0 0 [  4  4  4\n  4  4  4\n 4  4  4]",
                                      font + "0 0 1 [ 5 5 5 5 5 5 5 5 5 5 5 5 5 5]",
                                      font + "0 1 0 [6 6 6 6\n 6 6 6 6\n6 6 6 6 6 6 6 6 6 6 6 6]",
                                      font + "1 0 0 [7  7  7\n  7  7  7\n 7  7  7]"}));
  Calls diffuse = gl("Disable", GL_DEPTH_TEST);
  for (const char* color : {"0.8 0.8 0.8", "0.8 0 0", "0 0 0.8", "0 0.8 0", "0.8 0 0", "0 0 0.8",
                            "0 0.8 0", "0.8 0 0"}) {
    diffuse += gl("Lightfv", GL_LIGHT0 + countOf(diffuse, "Lightfv"), GL_DIFFUSE, color, 1);
  }
  EXPECT_TRUE(setUp.ends_with(diffuse));
}

TEST_F(GlSetup, ComesBeforeDrawingAndTheProjectionLooksStraightDown) {
  test.emplace(&history);
  test->draw();
  test->drawUsingArrays(1);
  test->drawUsingElements(1);
  test->drawUsingArrayElements(1);
  test->drawUsingVertexArrayObjects(1);
  test->drawUsingVertexBufferObjects(1);
  test->setZoom(5);
  EXPECT_EQ(takeCalls(), "");
  EXPECT_EQ(history.getSampleCount(), 0);
  test->reshape();
  EXPECT_EQ(countOf(takeCalls(), "glTexImage2D"), 16);
  EXPECT_DEATH(test->initGL(), "Setup.cpp:[0-9]+: failed assertion `!glInitialized'");
  const Calls projection = gl("Viewport", 0, 0, 640, 480) + gl("MatrixMode", GL_PROJECTION) +
                           gl("LoadIdentity") + gl("uPerspective", 53.2F, 1, 0.1F, 1000) +
                           gl("uLookAt", 200, 200, 400, 200, 200, 0, 0, 1, 0);
  const Calls start = gl("MatrixMode", GL_MODELVIEW) + gl("LoadIdentity");
  test->setZoom(-20);
  history.addSample(1);
  test->setBounds(640, 480);
  EXPECT_EQ(takeCalls(), projection + start);
  EXPECT_EQ(history.getSampleCount(), 1);
  test->setDrawsOffscreen(true);
  EXPECT_EQ(takeCalls(), projection + gl("Translatef", 0, 0, 500) + start);
}

}  // namespace
