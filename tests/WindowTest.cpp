// What the program's window shows.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"

// Last: macros of Xlib's would spoil GoogleTest's headers.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

/// Whether the mesh lies in the middle with the picture on it, upright, and nothing around it.
bool showsThePicture(Display* display, Window window) {
  XWindowAttributes now;
  XGetWindowAttributes(display, window, &now);
  // Without a window manager its frame, a pixel or so, lies off the screen.
  const int width = now.width - 4;
  const int height = now.height - 4;
  XImage* const image = XGetImage(display, window, 2, 2, static_cast<unsigned int>(width),
                                  static_cast<unsigned int>(height), AllPlanes, ZPixmap);
  if (image == nullptr) {
    return false;  // it has been resized meanwhile
  }
  const auto pixel = [&](double x, double y) {
    return XGetPixel(image, static_cast<int>(width * x), static_cast<int>(height * y)) & 0xFFFFFF;
  };
  const auto strongest = [&](double x, double y, int shift) {
    const auto channel = [&](int by) { return static_cast<int>(pixel(x, y) >> by % 24 & 0xFF); };
    return channel(shift) > std::max(channel(shift + 8), channel(shift + 16)) + 30;
  };
  bool white = true;
  for (const double edge : {0.13, 0.87}) {
    white = white && pixel(edge, 0.5) == 0xFFFFFF && pixel(0.5, edge) == 0xFFFFFF;
  }
  const bool upright =
      strongest(0.17, 0.17, 16) && strongest(0.83, 0.17, 8) && strongest(0.17, 0.83, 0);
  XDestroyImage(image);
  return white && upright;
}

TEST(Window, ShowsThePictureInTheMiddleAlsoAfterAResize) {
  needXServer();
  FILE* const program =
      popen("exec timeout 600 " SORVANTA_BINARY " -r 600 -t0 -d 32 -w 250 -h 350 2>&1", "re");
  Display* const display = XOpenDisplay(nullptr);
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  const Window window =
      std::stoul(shell("timeout 100 xdotool search --sync --onlyvisible --name SorvantaTest"));
  EXPECT_TRUE(poll([&] { return showsThePicture(display, window); }));
  XResizeWindow(display, window, 300, 200);
  EXPECT_TRUE(poll([&] { return showsThePicture(display, window); }));
  XKillClient(display, window);
  XCloseDisplay(display);
  pclose(program);
}

}  // namespace
