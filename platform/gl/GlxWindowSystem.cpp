#include "platform/gl/GlxWindowSystem.h"

#include <GL/glx.h>

const WindowSystem& glxWindowSystem() {
  static constexpr WindowSystem kGlx = {
      []() -> const void* { return glXGetCurrentContext(); },
      [](const char* name) { return glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)); },
      "glXGetProcAddress"};
  return kGlx;
}
