#include "platform/gl/RendererLine.h"

std::string glText(GLenum name) {
  const auto* const text = reinterpret_cast<const char*>(glGetString(name));
  return text != nullptr ? text : "";
}

std::string rendererLine() {
  return glText(GL_RENDERER) + ", " + glText(GL_VERSION);
}
