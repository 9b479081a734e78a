/// A GL that draws nothing, linked in place of the GL library and of the context fetch. It keeps
/// every call, counts the names that are alive, and poses as whatever driver a test wants.
#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/gl/GL.h"

/// A call and its arguments. Numbers, enumerants and addresses all fit a double without loss. Of
/// light and material values the values themselves are kept. Calls through the context's table
/// are named "context " and the entry's name.
struct Call {
  std::string name;
  std::vector<double> arguments;
  bool operator==(const Call&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Call& call);

template <typename Value>
double asArgument(Value value) {
  if constexpr (std::is_pointer_v<Value>) {
    return static_cast<double>(reinterpret_cast<std::uintptr_t>(value));
  } else {
    return static_cast<double>(value);
  }
}

template <typename... Arguments>
Call call(std::string name, Arguments... arguments) {
  return {std::move(name), {asArgument(arguments)...}};
}

struct FakeDriver {
  std::string extensions =
      "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object GL_EXT_compiled_vertex_array";
  std::map<GLenum, GLint> integers = {
      {GL_MAX_LIGHTS, 8}, {GL_MAX_TEXTURE_UNITS, 8}, {GL_CLIENT_ACTIVE_TEXTURE, GL_TEXTURE0}};
  bool unmapSucceeds = true;
  GLenum error = GL_NO_ERROR;         ///< what glGetError tells
  std::map<GLenum, bool> enabled;     ///< what glIsEnabled tells
  std::map<GLenum, void*> pointers;   ///< what glGetPointerv tells
  std::vector<unsigned char> buffer;  ///< what glMapBufferARB maps
  std::map<std::string, int> live;    ///< names alive: "Buffers", "Lists", "VertexArrays"
};

extern FakeDriver fakeDriver;
extern std::vector<Call> calls;

/// The calls made since the last take.
std::vector<Call> takeCalls();
