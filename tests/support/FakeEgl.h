/// An EGL whose devices tests make up, linked in place of the real library's functions.
#pragma once

#include <string>
#include <vector>

#include "platform/headless/Egl.h"

/// A device of the tests' EGL, which is its own display, config, context and buffer as well.
struct FakeDevice {
  std::string extensions, name;
  const char* renderer = "";
  const char* listOfExtensions = "";  ///< null in newer profiles
  EGLint configs = 1;
  bool (*start)() = [] { return true; };
};

extern std::vector<FakeDevice> fakeDevices;
extern void (*whileListing)();  ///< called when the devices are asked for
