#include <dlfcn.h>

#include "platform/headless/Egl.h"
#include "platform/headless/Trouble.h"

namespace {

/// An address that becomes whatever function it is assigned to.
struct Symbol {
  void* address;

  template <typename Function>
  // NOLINTNEXTLINE(google-explicit-constructor): the assignment says which function it is
  operator Function*() const {
    return reinterpret_cast<Function*>(address);
  }
};

class Library {
 public:
  Library() : handle_(dlopen("libEGL.so.1", RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) {
      throw HeadlessTrouble("without a display OpenGL is reached through EGL, which is missing (" +
                            std::string(dlerror()) + "); install the package libegl1.");
    }
  }

  Symbol operator[](const char* name) const {
    void* const address = dlsym(handle_, name);
    if (address == nullptr) {
      throw HeadlessTrouble("the EGL library has no " + std::string(name) +
                            "; install the package libegl1.");
    }
    return {address};
  }

 private:
  void* handle_;
};

/// Asks for the extensions by which devices are listed and used.
void needDevicePlatform(const char* extensions) {
  const bool listed = hasEglExtension(extensions, "EGL_EXT_device_base") ||
                      (hasEglExtension(extensions, "EGL_EXT_device_enumeration") &&
                       hasEglExtension(extensions, "EGL_EXT_device_query"));
  if (!listed || !hasEglExtension(extensions, "EGL_EXT_platform_device")) {
    throw HeadlessTrouble(
        "no EGL driver here offers the device platform, by which a graphics device is used without "
        "a display; install the card's own driver, or Mesa's with the packages libegl-mesa0 and "
        "libgl1-mesa-dri. EGL finds its drivers by the files in /usr/share/glvnd/egl_vendor.d, or "
        "by those that $__EGL_VENDOR_LIBRARY_FILENAMES names.");
  }
}

Egl load() {
  const Library library;
  const decltype(&eglGetProcAddress) extension = library["eglGetProcAddress"];
  const Egl functions{
      .bindAPI = library["eglBindAPI"],
      .chooseConfig = library["eglChooseConfig"],
      .createContext = library["eglCreateContext"],
      .createPbufferSurface = library["eglCreatePbufferSurface"],
      .destroyContext = library["eglDestroyContext"],
      .destroySurface = library["eglDestroySurface"],
      .getConfigAttrib = library["eglGetConfigAttrib"],
      .getCurrentContext = library["eglGetCurrentContext"],
      .getError = library["eglGetError"],
      .getProcAddress = extension,
      .initialize = library["eglInitialize"],
      .makeCurrent = library["eglMakeCurrent"],
      .queryString = library["eglQueryString"],
      .terminate = library["eglTerminate"],
      .getPlatformDisplayEXT =
          reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(extension("eglGetPlatformDisplayEXT")),
      .queryDevicesEXT =
          reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(extension("eglQueryDevicesEXT")),
      .queryDeviceStringEXT =
          reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(extension("eglQueryDeviceStringEXT")),
  };
  needDevicePlatform(functions.queryString(EGL_NO_DISPLAY, EGL_EXTENSIONS));
  return functions;
}

}  // namespace

const Egl& egl() {
  static const Egl functions = load();
  return functions;
}
