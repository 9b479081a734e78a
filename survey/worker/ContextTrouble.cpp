#include "survey/worker/ContextTrouble.h"

#include <array>

#include <fmt/format.h>

#include "platform/gl/Driver.h"
#include "platform/gl/GL.h"
#include "platform/gl/WindowSystem.h"

namespace survey {
namespace {

using ResetStatus = GLenum (*)();

ResetStatus findResetStatus() {
  const char* const name = hasExtension("GL_KHR_robustness")   ? "glGetGraphicsResetStatus"
                           : hasExtension("GL_ARB_robustness") ? "glGetGraphicsResetStatusARB"
                                                               : nullptr;
  return name == nullptr ? nullptr
                         : reinterpret_cast<ResetStatus>(windowSystem().functionAddress(name));
}

bool isLost() {
  static const ResetStatus resetStatus = findResetStatus();
  return resetStatus != nullptr && resetStatus() != GL_NO_ERROR;
}

std::string nameOf(GLenum error) {
  constexpr std::array kNames = {"GL_INVALID_ENUM",
                                 "GL_INVALID_VALUE",
                                 "GL_INVALID_OPERATION",
                                 "GL_STACK_OVERFLOW",
                                 "GL_STACK_UNDERFLOW",
                                 "GL_OUT_OF_MEMORY",
                                 "GL_INVALID_FRAMEBUFFER_OPERATION"};
  const std::size_t index = error - GL_INVALID_ENUM;
  return index < kNames.size() ? kNames[index] : fmt::format("the GL error 0x{:04X}", error);
}

}  // namespace

std::string contextTrouble() {
  const GLenum error = glGetError();
  if (error == GL_CONTEXT_LOST || isLost()) {
    return "the driver lost its context";
  }
  return error == GL_NO_ERROR ? "" : "the driver reported " + nameOf(error);
}

}  // namespace survey
