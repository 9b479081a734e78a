/// A GL context without a window.
#pragma once

#include <gtest/gtest.h>

#include "platform/headless/DeviceChoice.h"
#include "platform/headless/HeadlessContext.h"
#include "tests/support/Shell.h"

/// Makes the process's one test context on first use, 400 by 400 pixels, and keeps it current.
inline void needGlContext() {
  static std::vector<HeadlessDevice> devices = listDevices();
  static const HeadlessContext context(chooseDevice(devices, wantedDevice()).number, 400, 400);
  EXPECT_NE(context.name().find(wantedRenderer()), std::string::npos) << context.name();
}
