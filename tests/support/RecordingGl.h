/// A GL that draws nothing, linked in place of the GL library and of the context fetch. It keeps
/// every call and poses as whatever driver a test wants.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/gl/GL.h"

/// Calls, a line each: the name and the arguments. Of light and material values the values
/// themselves are kept. Calls through the context's table are named "context " and the entry's
/// name.
using Calls = std::string;

template <typename... Arguments>
Calls call(const std::string& name, Arguments... arguments) {
  std::ostringstream words;
  words << name;
  ((words << ' ' << arguments), ...);
  return words.str() + '\n';
}

template <typename... Arguments>
Calls gl(const std::string& name, Arguments... arguments) {
  return call("gl" + name, arguments...);
}

inline Calls activeUnit(GLenum unit) {
  return gl("ActiveTextureARB", unit) + gl("ClientActiveTextureARB", unit);
}

/// As it is called where state is thrashed.
inline Calls thrashed(const Calls& model) {
  return gl("PushAttrib", 0xFFFFF) + model + gl("PopAttrib");
}

inline Calls repeat(int times, const Calls& once) {
  return times > 0 ? once + repeat(times - 1, once) : "";
}

int countOf(const Calls& made, const Calls& part);
inline bool contains(const Calls& made, const Calls& part) {
  return countOf(made, part) > 0;
}

struct FakeDriver {
  std::string version = "4.5 (Compatibility Profile)";
  std::string extensions =
      "GL_ARB_buffer_storage GL_ARB_map_buffer_range GL_ARB_multi_draw_indirect GL_ARB_sync "
      "GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object GL_EXT_compiled_vertex_array";
  std::map<GLenum, GLint> integers = {{GL_MAX_LIGHTS, 8},
                                      {GL_MAX_TEXTURE_UNITS, 8},
                                      {GL_MAX_TEXTURE_SIZE, 2048},
                                      {GL_BUFFER_SIZE, 1},  // of any buffer
                                      {0x8520, 1 << 20}};   // vertices of a native range
  std::set<GLuint> names;  ///< in use, of all kinds; a new one is the lowest that is free
  std::map<std::string, GLenum> errors;        ///< that calls leave, by name
  std::map<std::string, std::uint64_t> takes;  ///< microseconds on the fake clock, by name
  std::map<std::string, std::function<void()>> meanwhile;  ///< what happens in calls, by name
  bool unmapSucceeds = true;
  std::vector<GLenum> waits;        ///< what waiting for a fence gives, from the last one on
  GLDEBUGPROC onMessage = nullptr;  ///< the last one set
  std::vector<float> buffer =
      std::vector<float>(1 << 18);  ///< that gets filled and mapped, whichever it is
};

extern FakeDriver fakeDriver;

/// The calls made since the last take.
Calls takeCalls();
