#include "app/Diagnostics.h"

#include <cstdlib>
#include <iostream>

#include "platform/gl/GL.h"

void checkGL() {
  const GLenum error = glGetError();
  if (error == GL_NO_ERROR) {
    return;
  }
  const auto text = [](const GLubyte* string) {
    return string != nullptr ? reinterpret_cast<const char*>(string) : "";
  };
  std::cerr << "GL Error: \"" << text(gluErrorString(error)) << "\"\n"
            << "Program Error: \"" << text(glGetString(GL_PROGRAM_ERROR_STRING_ARB)) << "\"\n";
  std::abort();
}
