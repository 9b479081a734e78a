// A GL whose functions return at once: what is left of a drawing operation is our own cost and
// that of calling. A shared library, so that calls take the same road as to the real one.
#include <numeric>

#include "platform/gl/ContextTable.h"

#define GL_DISPATCHED(name, parameters, arguments) \
  void gl##name parameters {}
#define GL_COMMAND(name, parameters, arguments) \
  void name parameters {}
#define GL_NAMING(name)                     \
  void name(GLsizei n, GLuint* names) {     \
    std::iota(names, names + n, GLuint{1}); \
  }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include "platform/gl/EntryPoints.def"
#pragma GCC diagnostic pop

void glDebugMessageCallback(GLDEBUGPROC /*callback*/, const void* /*user*/) {}
GLenum glClientWaitSync(GLsync /*sync*/, GLbitfield /*flags*/, GLuint64 /*timeout*/) {
  return GL_ALREADY_SIGNALED;
}
GLsync glFenceSync(GLenum /*condition*/, GLbitfield /*flags*/) {
  static int anything;
  return reinterpret_cast<GLsync>(&anything);
}
GLuint glGenLists(GLsizei /*range*/) {
  return 1;
}
GLenum glGetError() {
  return GL_NO_ERROR;
}
void glGetBufferParameterivARB(GLenum /*target*/, GLenum /*name*/, GLint* value) {
  *value = 1;
}
void glGetIntegerv(GLenum /*name*/, GLint* values) {
  *values = 0;
}
void glGetPointerv(GLenum /*name*/, void** pointer) {
  *pointer = nullptr;
}
const GLubyte* glGetString(GLenum name) {
  return reinterpret_cast<const GLubyte*>(
      name == GL_VERSION
          ? "3.1"
          : "GL_ARB_buffer_storage GL_ARB_map_buffer_range GL_ARB_multi_draw_indirect GL_ARB_sync "
            "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object GL_EXT_compiled_vertex_array");
}
GLboolean glIsEnabled(GLenum /*capability*/) {
  return GL_FALSE;
}
void* glMapBufferARB(GLenum /*target*/, GLenum /*access*/) {
  static unsigned char memory[4 << 20];
  return memory;
}
void* glMapBufferRange(GLenum target, GLintptr /*offset*/, GLsizeiptr /*length*/,
                       GLbitfield /*access*/) {
  return glMapBufferARB(target, GL_WRITE_ONLY_ARB);
}
GLboolean glUnmapBufferARB(GLenum /*target*/) {
  return GL_TRUE;
}

CGLContextObj CGLGetCurrentContext() {
  static const ContextObject context;
  return &context;
}
