/// The EGL client library. It is looked for when it is first needed, not linked: programs that open
/// windows run without it, and where it is missing a sentence says so.
#pragma once

#include <string>
#include <string_view>

#include <EGL/egl.h>
#include <EGL/eglext.h>

/// EGL's functions, named without the prefix "egl".
struct Egl {
  decltype(&eglBindAPI) bindAPI;
  decltype(&eglChooseConfig) chooseConfig;
  decltype(&eglCreateContext) createContext;
  decltype(&eglCreatePbufferSurface) createPbufferSurface;
  decltype(&eglDestroyContext) destroyContext;
  decltype(&eglDestroySurface) destroySurface;
  decltype(&eglGetConfigAttrib) getConfigAttrib;
  decltype(&eglGetCurrentContext) getCurrentContext;
  decltype(&eglGetError) getError;
  decltype(&eglGetProcAddress) getProcAddress;
  decltype(&eglInitialize) initialize;
  decltype(&eglMakeCurrent) makeCurrent;
  decltype(&eglQueryString) queryString;
  decltype(&eglTerminate) terminate;
  PFNEGLGETPLATFORMDISPLAYEXTPROC getPlatformDisplayEXT;
  PFNEGLQUERYDEVICESEXTPROC queryDevicesEXT;
  PFNEGLQUERYDEVICESTRINGEXTPROC queryDeviceStringEXT;
};

/// The library with its device platform, loaded on first use and kept. Throws HeadlessTrouble where
/// either is missing.
const Egl& egl();

/// Whether a list of extensions, which may be null, holds that one.
bool hasEglExtension(const char* extensions, std::string_view name);

/// The name of the error of the last call, which is forgotten then.
std::string takeEglError();
