#include "platform/headless/HeadlessContext.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <vector>

#include <GL/gl.h>

#include "platform/headless/DeviceNames.h"
#include "platform/headless/EglDevice.h"
#include "platform/headless/RenderNodes.h"
#include "platform/headless/Trouble.h"

namespace {

const char* const kNoOpenGL =
    "the device's driver has no desktop OpenGL of the compatibility profile, only other interfaces "
    "or newer profiles; install another driver for it or use another device.";

EglDevice deviceOf(unsigned int number) {
  const std::vector<EglDevice> devices = eglDevices();
  if (number >= devices.size()) {
    throw HeadlessTrouble("EGL lists no graphics device of number " + std::to_string(number) +
                          "; they are numbered from 0.");
  }
  return devices[number];
}

EGLDisplay startDriver(const EglDevice& device) {
  EGLDisplay display = egl().getPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, device.handle, nullptr);
  if (display == EGL_NO_DISPLAY || egl().initialize(display, nullptr, nullptr) == EGL_FALSE) {
    const std::string error = takeEglError();
    const std::string forbidden = whyForbidden(device.renderNode());
    throw HeadlessTrouble(
        !forbidden.empty()
            ? forbidden
            : "the device's driver does not start (" + error +
                  "); install its OpenGL driver: Mesa's are in the package libgl1-mesa-dri, "
                  "others come from the card's maker.");
  }
  return display;
}

/// The smallest is the config nearest to a window's.
auto distanceFromWindow(EGLDisplay display, EGLConfig config) {
  const auto value = [=](EGLint attribute) {
    EGLint answer = 0;
    egl().getConfigAttrib(display, config, attribute, &answer);
    return answer;
  };
  return std::tuple(value(EGL_CONFIG_CAVEAT) != EGL_NONE, value(EGL_SAMPLES), value(EGL_RED_SIZE),
                    value(EGL_ALPHA_SIZE), -value(EGL_DEPTH_SIZE), value(EGL_STENCIL_SIZE));
}

EGLConfig chooseConfig(EGLDisplay display) {
  constexpr std::array kNeeded = {EGL_SURFACE_TYPE,
                                  EGL_PBUFFER_BIT,  // not windows alone
                                  EGL_RENDERABLE_TYPE,
                                  EGL_OPENGL_BIT,  // not OpenGL ES alone
                                  EGL_RED_SIZE,        8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8,
                                  EGL_DEPTH_SIZE,      1, EGL_NONE};
  EGLint count = 0;
  egl().chooseConfig(display, kNeeded.data(), nullptr, 0, &count);
  std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
  egl().chooseConfig(display, kNeeded.data(), configs.data(), count, &count);
  if (count == 0) {
    throw HeadlessTrouble(kNoOpenGL);
  }
  return *std::min_element(configs.begin(), configs.begin() + count, [=](EGLConfig a, EGLConfig b) {
    return distanceFromWindow(display, a) < distanceFromWindow(display, b);
  });
}

/// Without a version: of the newest one that still has all of the first. A driver that can tell of
/// the context's loss is asked to: what is drawn afterwards costs nothing.
EGLContext makeContext(EGLDisplay display, EGLConfig config) {
  constexpr std::array kToldOfLoss = {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY,
                                      EGL_LOSE_CONTEXT_ON_RESET, EGL_NONE};
  EGLContext context = egl().createContext(display, config, EGL_NO_CONTEXT, kToldOfLoss.data());
  return context != EGL_NO_CONTEXT ? context
                                   : egl().createContext(display, config, EGL_NO_CONTEXT, nullptr);
}

using GetString = const GLubyte* (*)(GLenum);

/// Through EGL, as the GL library that a program links need not be the real one.
const char* glText(GLenum name) {
  const auto getString = reinterpret_cast<GetString>(egl().getProcAddress("glGetString"));
  return getString != nullptr ? reinterpret_cast<const char*>(getString(name)) : nullptr;
}

}  // namespace

HeadlessContext::HeadlessContext(unsigned int device, int width, int height) {
  const EglDevice chosen = deviceOf(device);
  display_ = {startDriver(chosen), [](void* display) { egl().terminate(display); }};
  if (egl().bindAPI(EGL_OPENGL_API) == EGL_FALSE) {
    throw HeadlessTrouble(kNoOpenGL);
  }
  config_ = chooseConfig(display_.get());
  context_ = {makeContext(display_.get(), config_),
              [this](void* context) { egl().destroyContext(display_.get(), context); }};
  if (context_ == nullptr) {
    throw HeadlessTrouble("the device's driver cannot make an OpenGL context (" + takeEglError() +
                          "); install another driver for it or use another device.");
  }
  resize(width, height);
  const char* const renderer = glText(GL_RENDERER);
  const char* const extensions = glText(GL_EXTENSIONS);  // newer profiles have no such list
  if (renderer == nullptr || extensions == nullptr) {
    throw HeadlessTrouble(kNoOpenGL);
  }
  name_ = renderer;
  // A layered driver on a software device may still have found itself a card.
  software_ = isSoftwareRenderer(name_) || (chosen.declaredSoftware() && !mentions(name_, "zink"));
}

HeadlessContext::~HeadlessContext() {
  egl().makeCurrent(display_.get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

HeadlessContext::Made HeadlessContext::makeBuffer(int width, int height) const {
  const std::array<EGLint, 5> size = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
  return {egl().createPbufferSurface(display_.get(), config_, size.data()),
          [this](void* buffer) { egl().destroySurface(display_.get(), buffer); }};
}

void HeadlessContext::resize(int width, int height) {
  Made buffer = makeBuffer(width, height);
  if (buffer == nullptr ||
      egl().makeCurrent(display_.get(), buffer.get(), buffer.get(), context_.get()) == EGL_FALSE) {
    throw HeadlessTrouble("the device's driver cannot make a pixel buffer of " +
                          std::to_string(width) + " by " + std::to_string(height) + " pixels (" +
                          takeEglError() + "); ask for a smaller one.");
  }
  buffer_ = std::move(buffer);
}
