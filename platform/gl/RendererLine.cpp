#include "platform/gl/RendererLine.h"

#include "platform/process/ForeignText.h"

std::string glText(GLenum name) {
  const auto* const text = reinterpret_cast<const char*>(glGetString(name));
  return text != nullptr ? text : "";
}

std::string rendererLine() {
  return harmless(glText(GL_RENDERER) + ", " + glText(GL_VERSION));
}
