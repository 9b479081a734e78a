#include "platform/gl/ContextTable.h"
#include "tests/support/EngineTest.h"

FakeDriver fakeDriver;
Calls calls;

Calls takeCalls() {
  return std::exchange(calls, {});
}

namespace {

auto keep(const char* name) {
  return [=](auto... arguments) { calls.push_back(call(name, arguments...)); };
}

/// Names count up from 1 across all kinds, so that no two are alike.
void makeNames(const char* function, GLsizei n, GLuint* names) {
  static GLuint last = 0;
  std::generate_n(names, n, [] { return ++last; });
  keep(function)(n, *names);
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void context##name parameters {                  \
    keep("context " #name) arguments;              \
  }
#include "platform/gl/EntryPoints.def"

}  // namespace

CGLContextObj CGLGetCurrentContext() {
  static const ContextObject context = {&fakeDriver,
                                        {
#define GL_DISPATCHED(name, parameters, arguments) context##name,
#include "platform/gl/EntryPoints.def"
                                        }};
  keep("CGLGetCurrentContext")();
  return &context;
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void gl##name parameters {                       \
    keep("gl" #name) arguments;                    \
  }
#define GL_COMMAND(name, parameters, arguments) \
  void name parameters {                        \
    keep(#name) arguments;                      \
  }
#include "platform/gl/EntryPoints.def"

void glGenBuffersARB(GLsizei n, GLuint* names) {
  makeNames("glGenBuffersARB", n, names);
}
void glGenTextures(GLsizei n, GLuint* names) {
  makeNames("glGenTextures", n, names);
}
void glGenVertexArrays(GLsizei n, GLuint* names) {
  makeNames("glGenVertexArrays", n, names);
}
void glGenVertexArraysAPPLE(GLsizei n, GLuint* names) {
  makeNames("glGenVertexArraysAPPLE", n, names);
}
GLuint glGenLists(GLsizei range) {
  GLuint name = 0;
  makeNames("glGenLists", range, &name);
  return name;
}
void glLightfv(GLenum light, GLenum name, const GLfloat* v) {
  keep("glLightfv")(light, name, v[0], v[1], v[2], v[3]);
}
void glMaterialfv(GLenum face, GLenum name, const GLfloat* values) {
  keep("glMaterialfv")(face, name, values[0]);
}
void* glMapBufferARB(GLenum target, GLenum access) {
  keep("glMapBufferARB")(target, access);
  return fakeDriver.buffer.empty() ? nullptr : fakeDriver.buffer.data();
}
GLboolean glUnmapBufferARB(GLenum target) {
  keep("glUnmapBufferARB")(target);
  return fakeDriver.unmapSucceeds ? GL_TRUE : GL_FALSE;
}

// Questions change nothing and are not kept.
GLenum glGetError() {
  return GL_NO_ERROR;
}
void glGetIntegerv(GLenum name, GLint* values) {
  *values = fakeDriver.integers[name];
}
void glGetPointerv(GLenum /*name*/, void** pointer) {
  *pointer = nullptr;
}
GLboolean glIsEnabled(GLenum /*capability*/) {
  return GL_FALSE;
}
const GLubyte* glGetString(GLenum /*name*/) {
  return reinterpret_cast<const GLubyte*>(fakeDriver.extensions.c_str());
}
