/// Vertex array ranges: client memory that is the driver's to read. After writing to it the
/// client flushes.
#pragma once

#include <memory>

#include "platform/gl/GL.h"

/// One way of providing ranges. A range belongs to the vertex array object that is bound when it
/// is declared. The pointers of a named object are given after the declaration, through address();
/// those of the default object before it, as plain client pointers.
class VertexArrayRange {
 public:
  virtual ~VertexArrayRange() = default;

  /// The most vertices of that size that a range can cover; 0 when there are no ranges.
  virtual GLuint maximumVertices(GLuint bytesPerVertex) const = 0;

  /// Makes `size` bytes at `memory` the range of the bound object, whose name is `object`.
  virtual void declare(GLuint object, GLsizei size, void* memory) = 0;
  /// Has the bound object's arrays read from its range.
  virtual void enable() = 0;
  /// Shows the driver what has been written to `size` bytes at `memory`, in the range declared
  /// last.
  virtual void flush(GLsizei size, void* memory) = 0;
  /// Ends what enable began; the arrays lead to client memory again.
  virtual void disable() = 0;
  /// Ends the range of `object`, which need not be bound.
  virtual void withdraw(GLuint object) = 0;

  /// The pointer to give to GL for the array at `client` in the range declared last.
  virtual const void* address(const void* client) const { return client; }
  /// Lets go of what was kept for the next range of the default object.
  virtual void releaseKeptStorage() {}
};

enum class RangeProvider {
  kNative,  ///< GL_APPLE_vertex_array_range
  kPinned,  ///< GL_AMD_pinned_memory: a buffer object over the client's own memory
  kFilled,  ///< a buffer object that is filled at the flush
  kNone,    ///< no ranges: arrays are read from plain client memory
};

/// `maximumElements` is the native provider's limit; the others have limits of their own.
std::unique_ptr<VertexArrayRange> makeVertexArrayRange(RangeProvider provider,
                                                       GLuint maximumElements);
