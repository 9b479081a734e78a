#include "tests/support/RecordingGl.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "platform/gl/ContextTable.h"
#include "tests/support/Fakes.h"

FakeDriver fakeDriver;

namespace {

Calls calls;
GLenum error = GL_NO_ERROR;

/// What a call leaves beside what it is for.
void leaveTraces(const char* name) {
  if (const auto taken = fakeDriver.takes.find(name); taken != fakeDriver.takes.end()) {
    fakeClock.now += taken->second;
  }
  if (const auto left = fakeDriver.errors.find(name); left != fakeDriver.errors.end()) {
    error = left->second;
  }
  if (const auto happens = fakeDriver.meanwhile.find(name); happens != fakeDriver.meanwhile.end()) {
    happens->second();
  }
}

/// Gives names back that a command deletes: of buffers and objects one at a time.
void forget(GLsizei /*count*/, GLuint name) {
  EXPECT_EQ(fakeDriver.names.erase(name), 1U);
}
void forget(GLuint list, GLsizei count) {
  forget(count, list);
}
void forget(GLsync fence) {
  forget(1, static_cast<GLuint>(reinterpret_cast<std::uintptr_t>(fence)));
}
template <typename... Arguments>
void forget(Arguments... /*of other commands*/) {}

/// Writes what a command gives the buffer.
void store(GLenum /*target*/, GLintptrARB offset, GLsizeiptrARB size, const void* data) {
  const auto start = static_cast<std::size_t>(offset);
  const std::size_t whole = fakeDriver.buffer.size() * sizeof(float);
  if (start < whole) {
    std::memcpy(reinterpret_cast<std::byte*>(fakeDriver.buffer.data()) + start, data,
                std::min(static_cast<std::size_t>(size), whole - start));
  }
}
template <typename... Arguments>
void store(Arguments... /*of other commands*/) {}

auto keep(const char* name) {
  return [=](auto... arguments) {
    calls += call(name, arguments...);
    if (std::string_view(name).starts_with("glDelete")) {
      forget(arguments...);
    }
    store(arguments...);
    leaveTraces(name);
  };
}

GLuint newName() {
  GLuint name = 1;
  while (!fakeDriver.names.insert(name).second) {
    ++name;
  }
  return name;
}

#define GL_DISPATCHED(name, parameters, arguments) \
  void context##name parameters {                  \
    keep("context " #name) arguments;              \
  }
#include "platform/gl/EntryPoints.def"

}  // namespace

Calls takeCalls() {
  return std::exchange(calls, {});
}

int countOf(const Calls& made, const Calls& part) {
  int count = 0;
  for (auto at = made.find(part); at != Calls::npos; at = made.find(part, at + 1)) {
    ++count;
  }
  return count;
}

CGLContextObj CGLGetCurrentContext() {
  static const ContextObject context = {&fakeDriver,
                                        nullptr,
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
#define GL_NAMING(name)                 \
  void name(GLsizei n, GLuint* names) { \
    std::generate_n(names, n, newName); \
    keep(#name)(n, *names);             \
  }
#include "platform/gl/EntryPoints.def"

void glDebugMessageCallback(GLDEBUGPROC callback, const void* /*user*/) {
  keep("glDebugMessageCallback")(callback != nullptr);
  fakeDriver.onMessage = callback != nullptr ? callback : fakeDriver.onMessage;
}
GLuint glGenLists(GLsizei range) {
  const GLuint list = newName();
  keep("glGenLists")(range, list);
  return list;
}
void* glMapBufferARB(GLenum target, GLenum access) {
  keep("glMapBufferARB")(target, access);
  return fakeDriver.buffer.empty() ? nullptr : fakeDriver.buffer.data();
}
void* glMapBufferRange(GLenum target, GLintptr offset, GLsizeiptr length, GLbitfield access) {
  keep("glMapBufferRange")(target, offset, length, access);
  return fakeDriver.buffer.empty() ? nullptr : fakeDriver.buffer.data();
}
GLsync glFenceSync(GLenum /*condition*/, GLbitfield /*flags*/) {
  auto* const sync = reinterpret_cast<GLsync>(std::uintptr_t{newName()});
  keep("glFenceSync")(sync);
  return sync;
}
GLenum glClientWaitSync(GLsync sync, GLbitfield flags, GLuint64 timeout) {
  keep("glClientWaitSync")(sync, flags, timeout);
  if (fakeDriver.waits.empty()) {
    return GL_ALREADY_SIGNALED;
  }
  const GLenum found = fakeDriver.waits.back();
  fakeDriver.waits.pop_back();
  return found;
}
GLboolean glUnmapBufferARB(GLenum target) {
  keep("glUnmapBufferARB")(target);
  return fakeDriver.unmapSucceeds ? GL_TRUE : GL_FALSE;
}

// Questions change nothing and are not kept.
void glReadPixels(GLint /*x*/, GLint /*y*/, GLsizei /*width*/, GLsizei /*height*/,
                  GLenum /*format*/, GLenum /*type*/, void* /*pixels*/) {
  leaveTraces("glReadPixels");
}
GLenum glGetError() {
  return std::exchange(error, GL_NO_ERROR);
}
const GLubyte* gluErrorString(GLenum /*error*/) {
  return nullptr;
}
void glGetBufferParameterivARB(GLenum /*target*/, GLenum name, GLint* value) {
  *value = fakeDriver.integers[name];
}
void glGetIntegerv(GLenum name, GLint* values) {
  leaveTraces("glGetIntegerv");
  *values = fakeDriver.integers[name];
}
void glGetPointerv(GLenum /*name*/, void** pointer) {
  *pointer = nullptr;
}
GLboolean glIsEnabled(GLenum /*capability*/) {
  return GL_FALSE;
}
const GLubyte* glGetString(GLenum name) {
  const std::string& text = name == GL_VERSION ? fakeDriver.version : fakeDriver.extensions;
  return reinterpret_cast<const GLubyte*>(text.c_str());
}
