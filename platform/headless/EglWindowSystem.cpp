#include "platform/headless/EglWindowSystem.h"

#include "platform/headless/Egl.h"

const WindowSystem& eglWindowSystem() {
  static constexpr WindowSystem kEgl = {[]() -> const void* { return egl().getCurrentContext(); },
                                        [](const char* name) { return egl().getProcAddress(name); },
                                        "eglGetProcAddress"};
  return kEgl;
}
