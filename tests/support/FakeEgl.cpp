#include "tests/support/FakeEgl.h"

#include <algorithm>

#include "platform/gl/GL.h"

std::vector<FakeDevice> fakeDevices;
void (*whileListing)() = [] {};

namespace {

FakeDevice* currentDevice = nullptr;

const GLubyte* getString(GLenum name) {
  const char* const text =
      name == GL_RENDERER ? currentDevice->renderer : currentDevice->listOfExtensions;
  return reinterpret_cast<const GLubyte*>(text);
}

}  // namespace

const Egl& egl() {
  static const Egl functions{
      .bindAPI = [](EGLenum) -> EGLBoolean { return EGL_TRUE; },
      .chooseConfig = [](EGLDisplay display, const EGLint*, EGLConfig* configs, EGLint size,
                         EGLint* count) -> EGLBoolean {
        auto& offered = static_cast<FakeDevice*>(display)->configs;
        *count = static_cast<EGLint>(offered.size());
        for (EGLint i = 0; i < std::min(size, *count); ++i) {
          configs[i] = &offered[static_cast<std::size_t>(i)];
        }
        return EGL_TRUE;
      },
      .createContext = [](EGLDisplay display, EGLConfig config, EGLContext,
                          const EGLint*) -> EGLContext {
        auto* const device = static_cast<FakeDevice*>(display);
        device->chosen =
            static_cast<std::size_t>(static_cast<FakeConfig*>(config) - device->configs.data());
        return display;
      },
      .createPbufferSurface = [](EGLDisplay display, EGLConfig, const EGLint*) -> EGLSurface {
        return display;
      },
      .destroyContext = [](EGLDisplay, EGLContext) -> EGLBoolean { return EGL_TRUE; },
      .destroySurface = [](EGLDisplay, EGLSurface) -> EGLBoolean { return EGL_TRUE; },
      .getConfigAttrib = [](EGLDisplay, EGLConfig config, EGLint name,
                            EGLint* value) -> EGLBoolean {
        const auto& known = *static_cast<FakeConfig*>(config);
        const auto found = known.find(name);
        *value = found != known.end() ? found->second : name == EGL_CONFIG_CAVEAT ? EGL_NONE : 0;
        return EGL_TRUE;
      },
      .getCurrentContext = []() -> EGLContext { return currentDevice; },
      .getError = []() -> EGLint { return EGL_NOT_INITIALIZED; },
      .getProcAddress =
          [](const char*) {
            return reinterpret_cast<__eglMustCastToProperFunctionPointerType>(getString);
          },
      .initialize = [](EGLDisplay display, EGLint*, EGLint*) -> EGLBoolean {
        return static_cast<FakeDevice*>(display)->start() ? EGL_TRUE : EGL_FALSE;
      },
      .makeCurrent = [](EGLDisplay display, EGLSurface, EGLSurface, EGLContext) -> EGLBoolean {
        currentDevice = static_cast<FakeDevice*>(display);
        return EGL_TRUE;
      },
      .queryString = nullptr,
      .terminate = [](EGLDisplay) -> EGLBoolean { return EGL_TRUE; },
      .getPlatformDisplayEXT = [](EGLenum, void* device, const EGLint*) { return device; },
      .queryDevicesEXT = [](EGLint size, EGLDeviceEXT* devices, EGLint* count) -> EGLBoolean {
        whileListing();
        *count = static_cast<EGLint>(fakeDevices.size());
        for (EGLint i = 0; i < std::min(size, *count); ++i) {
          devices[i] = &fakeDevices[static_cast<std::size_t>(i)];
        }
        return EGL_TRUE;
      },
      .queryDeviceStringEXT = [](EGLDeviceEXT device, EGLint name) -> const char* {
        const auto* const fake = static_cast<FakeDevice*>(device);
        return name == EGL_EXTENSIONS ? fake->extensions.c_str() : fake->name.c_str();
      },
  };
  return functions;
}
