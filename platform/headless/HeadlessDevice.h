/// The graphics devices that can be used without a display.
#pragma once

#include <string>
#include <vector>

struct HeadlessDevice {
  unsigned int number;     ///< its place in EGL's list, from 0
  std::string name;        ///< the renderer's, once it was tried; before, or in vain, the driver's
  std::string renderNode;  ///< as "/dev/dri/renderD128"; empty where there is none
  bool software;           ///< draws on the processor
  std::string trouble;     ///< why it gives no context, as sentences; empty where it does
};

/// The devices that EGL lists, none of them tried yet. No driver runs in this process. Throws
/// HeadlessTrouble.
std::vector<HeadlessDevice> listDevices();

/// Makes a context on the device, in another process, and takes its name, or the trouble, from it.
void tryDevice(HeadlessDevice& device);

/// Whether this machine has a graphics card that OpenGL might draw with, working or not: a device
/// of EGL's that is no software renderer, or a DRM render node.
bool hasHardwareDevice();
