/// An EGL whose devices tests make up, linked in place of the real library's functions.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "platform/headless/Egl.h"

/// The attributes of a config; those that it does not name are none.
using FakeConfig = std::map<EGLint, EGLint>;

/// A device of the tests' EGL, which is its own display, context and buffer as well.
struct FakeDevice {
  std::string extensions, name;
  const char* renderer = "";
  const char* listOfExtensions = "";  ///< null in newer profiles
  std::vector<FakeConfig> configs = {{}};
  bool (*start)() = [] { return true; };
  std::size_t chosen = 0;  ///< the config that its context was made with
};

extern std::vector<FakeDevice> fakeDevices;
extern void (*whileListing)();  ///< called when the devices are asked for
