// What is drawn in a window and what is drawn without one.
#include <functional>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "platform/headless/DeviceChoice.h"
#include "platform/headless/HeadlessContext.h"
#include "tests/support/Fakes.h"
#include "tests/support/GlWindow.h"

// Last: macros of Xlib's would spoil GoogleTest's headers.
#include <GL/glx.h>

namespace {

using Pixels = std::vector<unsigned char>;
using Resize = std::function<void(int width, int height)>;

/// Of every method in the current context, in views of odd and even sizes.
std::vector<Pixels> pictures(const Resize& resize) {
  PerformanceHistory history;
  SorvantaTest test(&history);
  test.initGL();
  test.setTexturing(0, true);
  test.setSecColor(true);
  std::vector<Pixels> all;
  for (const auto& [width, height] : {std::pair{400, 400}, {1, 1}, {17, 5}, {301, 203}}) {
    resize(width, height);
    test.setBounds(static_cast<unsigned int>(width), static_cast<unsigned int>(height));
    for (const DrawMethodWord& row : kDrawMethodWords) {
      test.setDrawMethod(row.method);
      test.draw();
      Pixels& pixels = all.emplace_back(std::size_t{3} * width * height);
      glPixelStorei(GL_PACK_ALIGNMENT, 1);
      glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    }
  }
  EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
  return all;
}

TEST(WindowPicture, IsTheSameWithoutAWindow) {
  fakeClock.step = 100000;  // one pass per frame
  std::vector<HeadlessDevice> devices = listDevices();
  const unsigned int device = chooseDevice(devices, wantedDevice()).number;
  needGlWindow();
  const std::vector<Pixels> inWindow = pictures([](int width, int height) {
    glutReshapeWindow(width, height);
    EXPECT_TRUE(poll([=] {
      glutMainLoopEvent();
      return glutGet(GLUT_WINDOW_WIDTH) == width && glutGet(GLUT_WINDOW_HEIGHT) == height;
    }));
  });
  glXMakeCurrent(glXGetCurrentDisplay(), 0, nullptr);  // a thread has one current context in all
  HeadlessContext context(device, 400, 400);
  const std::vector<Pixels> headless =
      pictures([&](int width, int height) { context.resize(width, height); });
  ASSERT_EQ(inWindow.size(), headless.size());
  for (std::size_t i = 0; i < headless.size(); ++i) {
    EXPECT_TRUE(inWindow[i] == headless[i]) << i;
  }
}

}  // namespace
