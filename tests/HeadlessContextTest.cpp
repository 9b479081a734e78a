// Contexts without a window through the real EGL.
#include <gtest/gtest.h>

#include "platform/gl/GL.h"
#include "platform/headless/DeviceChoice.h"
#include "platform/headless/EglWindowSystem.h"
#include "platform/headless/HeadlessContext.h"
#include "platform/headless/Trouble.h"

namespace {

/// Paints all of the buffer and reads its far corner.
unsigned int paintedRed(int width, int height) {
  glViewport(0, 0, width, height);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  unsigned char pixel[4] = {};
  glReadPixels(width - 1, height - 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
  EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
  return pixel[0];
}

TEST(HeadlessContext, DrawsInBuffersOfAnySizeAndKeepsItsState) {
  std::vector<HeadlessDevice> devices = listDevices();
  const HeadlessDevice device = chooseDevice(devices, wantedDevice());
  for (int times = 0; times < 2; ++times) {
    HeadlessContext context(device.number, 17, 5);
    EXPECT_EQ(context.name(), device.name);  // as tried in another process
    EXPECT_EQ(context.software(), device.software);
    EXPECT_NE(glGetString(GL_EXTENSIONS), nullptr);
    EXPECT_NE(eglWindowSystem().currentContext(), nullptr);
    EXPECT_NE(eglWindowSystem().functionAddress("glBegin"), nullptr);
    glClearColor(1, 0, 0, 1);
    EXPECT_EQ(paintedRed(17, 5), 255U);
    for (const auto& [width, height] : {std::pair{1, 1}, {401, 1}, {3, 777}, {1600, 1200}}) {
      context.resize(width, height);
      EXPECT_EQ(paintedRed(width, height), 255U);
    }
    EXPECT_THROW(context.resize(-1, 5), HeadlessTrouble);
    EXPECT_EQ(paintedRed(1600, 1200), 255U);
    GLint depth = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    EXPECT_GE(depth, 16);
  }
  EXPECT_EQ(glGetString(GL_RENDERER), nullptr);  // nothing is current any more
  EXPECT_EQ(eglWindowSystem().currentContext(), nullptr);
  EXPECT_THROW(HeadlessContext(static_cast<unsigned int>(devices.size()), 1, 1), HeadlessTrouble);
}

}  // namespace
