/// The devices as EGL lists them.
#pragma once

#include <string>
#include <vector>

#include "platform/headless/Egl.h"

struct EglDevice {
  EGLDeviceEXT handle;

  /// Whether the driver itself calls it a software renderer.
  bool declaredSoftware() const;
  /// Its DRM render node, as "/dev/dri/renderD128"; empty where it has none or does not tell.
  std::string renderNode() const;
  /// What it is called before there is a context on it; empty where it does not tell.
  std::string name() const;
};

/// In EGL's order, in which devices are numbered from 0. Throws HeadlessTrouble.
std::vector<EglDevice> eglDevices();
