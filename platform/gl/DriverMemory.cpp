#include "platform/gl/DriverMemory.h"

#include <cstdlib>
#include <string>

#include "platform/gl/Driver.h"
#include "platform/process/Sentences.h"

namespace {

std::string cannotCompile(const std::string& reason) {
  return "the driver cannot compile the display list of this model: " + reason + '.';
}

void GLAPIENTRY onMessage(GLenum /*source*/, GLenum type, GLuint /*id*/, GLenum /*severity*/,
                          GLsizei /*length*/, const GLchar* message, const void* /*user*/) {
  if (type == GL_DEBUG_TYPE_ERROR) {
    warn(cannotCompile(message));
    std::_Exit(EXIT_FAILURE);  // clean-up would call the driver again, which is in a call
  }
}

}  // namespace

void makeStore(GLenum target, std::size_t size, const void* data, GLenum usage) {
  GLint made = 0;  // stays so where the driver refuses
  glBufferDataARB(target, static_cast<GLsizeiptrARB>(size), data, usage);
  glGetBufferParameterivARB(target, GL_BUFFER_SIZE, &made);
  if (made == 0) {
    endWithoutBuffer(size);
  }
}

void endWithoutBuffer(std::size_t bytes) {
  glFinish();  // or the driver's own threads may be at work while the process ends
  endWith("the driver has no memory for a buffer of " + std::to_string(bytes) + " bytes.");
}

ListCompilation::ListCompilation() {
  if (driver().debugMessages) {
    glDebugMessageCallback(onMessage, nullptr);
    glEnable(GL_DEBUG_OUTPUT);
  }
}

ListCompilation::~ListCompilation() {
  check();
  if (driver().debugMessages) {
    glDisable(GL_DEBUG_OUTPUT);
    glDebugMessageCallback(nullptr, nullptr);
  }
}

void ListCompilation::check() {
  if (glGetError() == GL_OUT_OF_MEMORY) {
    endWith(cannotCompile("out of memory"));
  }
}
