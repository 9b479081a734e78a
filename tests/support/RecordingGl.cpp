#include <numeric>

#include "platform/gl/ContextTable.h"
#include "tests/support/EngineTest.h"

FakeDriver fakeDriver;
Calls calls;

Calls takeCalls() {
  return std::exchange(calls, {});
}

namespace {

auto keep(const char* name) {
  return [=](auto... arguments) { calls += call(name, arguments...); };
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void context##name parameters {                  \
    keep("context " #name) arguments;              \
  }
#include "platform/gl/EntryPoints.def"

}  // namespace

CGLContextObj CGLGetCurrentContext() {
  static const ContextObject context = {&fakeDriver,
                                        true,
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
#define GL_NAMING(name)                                                          \
  void name(GLsizei n, GLuint* names) {                                          \
    std::iota(names, names + n, fakeDriver.nextName);                            \
    keep(#name)(n, std::exchange(fakeDriver.nextName, fakeDriver.nextName + n)); \
  }
#include "platform/gl/EntryPoints.def"

GLuint glGenLists(GLsizei range) {
  keep("glGenLists")(range, fakeDriver.nextName);
  return fakeDriver.nextName++;
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
void glGetBufferParameterivARB(GLenum /*target*/, GLenum name, GLint* value) {
  *value = fakeDriver.integers[name];
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
