#include "platform/headless/Egl.h"

#include <array>

bool hasEglExtension(const char* extensions, std::string_view name) {
  const std::string all = ' ' + std::string(extensions != nullptr ? extensions : "") + ' ';
  return all.find(' ' + std::string(name) + ' ') != std::string::npos;
}

std::string takeEglError() {
  static constexpr std::array kNames = {
      "EGL_SUCCESS",       "EGL_NOT_INITIALIZED",     "EGL_BAD_ACCESS",
      "EGL_BAD_ALLOC",     "EGL_BAD_ATTRIBUTE",       "EGL_BAD_CONFIG",
      "EGL_BAD_CONTEXT",   "EGL_BAD_CURRENT_SURFACE", "EGL_BAD_DISPLAY",
      "EGL_BAD_MATCH",     "EGL_BAD_NATIVE_PIXMAP",   "EGL_BAD_NATIVE_WINDOW",
      "EGL_BAD_PARAMETER", "EGL_BAD_SURFACE",         "EGL_CONTEXT_LOST"};
  const auto error = static_cast<std::size_t>(egl().getError());
  const std::size_t index = error - EGL_SUCCESS;
  return index < kNames.size() ? kNames[index] : "EGL error " + std::to_string(error);
}
