#include "platform/gl/Driver.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include <unistd.h>

#include "platform/gl/RendererLine.h"

#ifndef GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE
#define GL_MAX_VERTEX_ARRAY_RANGE_ELEMENT_APPLE 0x8520
#endif

namespace {

Driver current;

/// Whether the context's OpenGL is that version or a later one.
bool hasVersion(int major, int minor) {
  const std::string version = glText(GL_VERSION);  // begins with "MAJOR.MINOR"
  int hasMajor = 0;
  int hasMinor = 0;
  return std::sscanf(version.c_str(), "%d.%d", &hasMajor, &hasMinor) == 2 &&
         std::pair(hasMajor, hasMinor) >= std::pair(major, minor);
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

bool hasExtension(std::string_view name) {
  const std::string all = ' ' + glText(GL_EXTENSIONS) + ' ';
  return all.find(' ' + std::string(name) + ' ') != std::string::npos;
}

void detectDriver() {
  current.compiledVertexArrays = hasExtension("GL_EXT_compiled_vertex_array");
  current.bufferObjects = hasExtension("GL_ARB_vertex_buffer_object");
  current.debugMessages = hasExtension("GL_KHR_debug");
  current.multiDraw = hasVersion(1, 4);
  current.multiDrawIndirect = hasExtension("GL_ARB_multi_draw_indirect");
  current.mapBufferRange = hasExtension("GL_ARB_map_buffer_range");
  current.bufferStorage = hasExtension("GL_ARB_buffer_storage");
  current.fences = hasExtension("GL_ARB_sync");
  current.primitiveRestart = hasVersion(3, 1)                          ? kCorePrimitiveRestart
                             : hasExtension("GL_NV_primitive_restart") ? kNvPrimitiveRestart
                                                                       : PrimitiveRestart{};
  if (hasExtension("GL_APPLE_vertex_array_object")) {
    current.vertexArrayObjects = kAppleVertexArrayFunctions;
  } else if (hasExtension("GL_ARB_vertex_array_object")) {
    current.vertexArrayObjects = kArbVertexArrayFunctions;
  } else {
    current.vertexArrayObjects = kNoVertexArrayFunctions;
  }
  forceRangeProvider(chooseRangeProvider());
}

void forceRangeProvider(RangeProvider provider) {
  current.vertexArrayRange->releaseKeptStorage();
  current.rangeProvider = provider;
  current.vertexArrayRange = makeVertexArrayRange(
      provider, provider == RangeProvider::kNative ? maximumRangeElements() : 0);
}
