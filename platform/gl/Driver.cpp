#include "platform/gl/Driver.h"

#include <array>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

#ifndef GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE
#define GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE 0x8520
#endif

namespace {

Driver current;

std::string_view glString(GLenum name) {
  const auto* text = reinterpret_cast<const char*>(glGetString(name));
  return text != nullptr ? text : "";
}

/// libGL exports functions that the driver may not have, so only these strings tell.
bool hasExtension(std::string_view name) {
  const std::string_view all = glString(GL_EXTENSIONS);
  for (std::size_t at = all.find(name); at != std::string_view::npos; at = all.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    if ((at == 0 || all[at - 1] == ' ') && (end == all.size() || all[end] == ' ')) {
      return true;
    }
  }
  return false;
}

/// Whether the driver takes a page of ours as a buffer, as its extension string says.
bool canPin() {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* const memory = std::aligned_alloc(page, page);
  GLuint buffer = 0;
  glGenBuffersARB(1, &buffer);
  glBindBufferARB(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, buffer);
  glBufferDataARB(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, static_cast<GLsizeiptrARB>(page), memory,
                  GL_STREAM_DRAW);
  const bool taken = memory != nullptr && glGetError() == GL_NO_ERROR;
  glBindBufferARB(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, 0);
  glDeleteBuffersARB(1, &buffer);
  glFinish();
  std::free(memory);
  return taken;
}

/// Needs the vertex array objects to be chosen: a native range is client memory, which the rows'
/// objects then have to accept.
RangeProvider chooseRangeProvider() {
  if (hasExtension("GL_APPLE_vertex_array_range") &&
      current.vertexArrayObjects.acceptsClientMemory) {
    return RangeProvider::kNative;
  }
  if (!current.bufferObjects) {
    return RangeProvider::kNone;
  }
  return hasExtension("GL_AMD_pinned_memory") && canPin() ? RangeProvider::kPinned
                                                          : RangeProvider::kFilled;
}

/// 0 when the driver rejects the query.
GLuint maximumRangeElements() {
  GLint elements = 0;
  glGetIntegerv(GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE, &elements);
  return glGetError() == GL_NO_ERROR ? static_cast<GLuint>(elements) : 0;
}

}  // namespace

const Driver& driver() {
  return current;
}

void detectDriver() {
  current.compiledVertexArrays = hasExtension("GL_EXT_compiled_vertex_array");
  current.bufferObjects = hasExtension("GL_ARB_vertex_buffer_object");
  if (hasExtension("GL_APPLE_vertex_array_object")) {
    current.vertexArrayObjects = kAppleVertexArrayObjects;
  } else if (hasExtension("GL_ARB_vertex_array_object")) {
    current.vertexArrayObjects = kArbVertexArrayObjects;
  } else {
    current.vertexArrayObjects = kNoVertexArrayObjects;
  }
  forceRangeProvider(chooseRangeProvider());
}

void forceRangeProvider(RangeProvider provider) {
  current.vertexArrayRange->releaseKeptStorage();
  current.rangeProvider = provider;
  current.vertexArrayRange = makeVertexArrayRange(
      provider, provider == RangeProvider::kNative ? maximumRangeElements() : 0);
}
