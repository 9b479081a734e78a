#include "platform/headless/EglDevice.h"

#include "platform/headless/Trouble.h"

#ifndef EGL_RENDERER_EXT
#define EGL_RENDERER_EXT 0x335F
#endif

namespace {

/// Empty unless the device has the extension, without which asking is an error.
std::string deviceString(EGLDeviceEXT device, const char* extension, EGLint name) {
  if (!hasEglExtension(egl().queryDeviceStringEXT(device, EGL_EXTENSIONS), extension)) {
    return "";
  }
  const char* const text = egl().queryDeviceStringEXT(device, name);
  return text != nullptr ? text : "";
}

}  // namespace

bool EglDevice::declaredSoftware() const {
  return hasEglExtension(egl().queryDeviceStringEXT(handle, EGL_EXTENSIONS),
                         "EGL_MESA_device_software");
}

std::string EglDevice::renderNode() const {
  return deviceString(handle, "EGL_EXT_device_drm_render_node", EGL_DRM_RENDER_NODE_FILE_EXT);
}

std::string EglDevice::name() const {
  const std::string renderer = deviceString(handle, "EGL_EXT_device_query_name", EGL_RENDERER_EXT);
  return !renderer.empty() ? renderer
                           : deviceString(handle, "EGL_EXT_device_query_name", EGL_VENDOR);
}

std::vector<EglDevice> eglDevices() {
  EGLint count = 0;
  if (egl().queryDevicesEXT(0, nullptr, &count) == EGL_FALSE) {
    throw HeadlessTrouble("EGL does not list its devices (" + takeEglError() +
                          "); reinstall the graphics driver.");
  }
  std::vector<EGLDeviceEXT> handles(static_cast<std::size_t>(count));
  egl().queryDevicesEXT(count, handles.data(), &count);
  std::vector<EglDevice> devices;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    devices.push_back({handles[i]});
  }
  return devices;
}
