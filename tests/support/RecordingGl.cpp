#include "tests/support/RecordingGl.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/gl/ContextTable.h"

FakeDriver fakeDriver;
std::vector<Call> calls;

std::vector<Call> takeCalls() {
  return std::exchange(calls, {});
}

std::ostream& operator<<(std::ostream& out, const Call& call) {
  out << call.name << '(';
  for (const double argument : call.arguments) {
    out << ' ' << argument;
  }
  return out << " )";
}

namespace {

/// How many names a call makes or ends, and of which kind.
void countNames(const Call& made) {
  const std::string& name = made.name;
  const int change = name.starts_with("glGen") ? 1 : name.starts_with("glDelete") ? -1 : 0;
  for (const char* kind : {"Buffers", "Lists", "VertexArrays"}) {
    if (change != 0 && name.find(kind) != std::string::npos) {
      fakeDriver.live[kind] += change;
    }
  }
}

template <typename Arguments>
void keep(const char* name, const Arguments& arguments) {
  calls.push_back(std::apply([=](auto... a) { return call(name, a...); }, arguments));
  countNames(calls.back());
}

/// Names count up from 1 across all kinds, so that no two are alike.
GLuint newName() {
  static GLuint last = 0;
  return ++last;
}

void makeNames(const char* function, GLsizei n, GLuint* names) {
  std::generate_n(names, n, newName);
  keep(function, std::tuple(n, names[0]));
}

void keepValues(const char* name, GLenum target, GLenum parameter, const GLfloat* values) {
  keep(name, std::tuple(target, parameter));
  calls.back().arguments.insert(calls.back().arguments.end(), values,
                                values + (parameter == GL_SHININESS ? 1 : 4));
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void context##name parameters {                  \
    keep("context " #name, std::tuple arguments);  \
  }
#include "platform/gl/EntryPoints.def"

}  // namespace

CGLContextObj CGLGetCurrentContext() {
  static const ContextObject context = {&fakeDriver,
                                        {
#define GL_DISPATCHED(name, parameters, arguments) context##name,
#include "platform/gl/EntryPoints.def"
                                        }};
  keep("CGLGetCurrentContext", std::tuple());
  return &context;
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void gl##name parameters {                       \
    keep("gl" #name, std::tuple arguments);        \
  }
#define GL_COMMAND(name, parameters, arguments) \
  void name parameters {                        \
    keep(#name, std::tuple arguments);          \
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
  keep("glGenLists", std::tuple(range));
  return newName();
}
void glLightfv(GLenum light, GLenum name, const GLfloat* values) {
  keepValues("glLightfv", light, name, values);
}
void glMaterialfv(GLenum face, GLenum name, const GLfloat* values) {
  keepValues("glMaterialfv", face, name, values);
}
void* glMapBufferARB(GLenum target, GLenum access) {
  keep("glMapBufferARB", std::tuple(target, access));
  return fakeDriver.buffer.empty() ? nullptr : fakeDriver.buffer.data();
}
GLboolean glUnmapBufferARB(GLenum target) {
  keep("glUnmapBufferARB", std::tuple(target));
  return fakeDriver.unmapSucceeds ? GL_TRUE : GL_FALSE;
}

// Questions change nothing and are not kept.
GLenum glGetError() {
  return std::exchange(fakeDriver.error, GL_NO_ERROR);
}
void glGetIntegerv(GLenum name, GLint* values) {
  *values = fakeDriver.integers[name];
}
void glGetPointerv(GLenum name, void** pointer) {
  *pointer = fakeDriver.pointers[name];
}
GLboolean glIsEnabled(GLenum capability) {
  return fakeDriver.enabled[capability] ? 1 : 0;
}
const GLubyte* glGetString(GLenum /*name*/) {
  return reinterpret_cast<const GLubyte*>(fakeDriver.extensions.c_str());
}
