#include "platform/gl/BufferRange.h"

#include <cstdint>

#include <unistd.h>

namespace {

/// One kind of client array: what to ask GL about it and how to point it. Kinds without a size
/// query have three components.
struct ArrayKind {
  GLenum array, size, type, stride, pointer, buffer;
  void (*point)(GLint size, GLenum type, GLsizei stride, const void* pointer);
};

constexpr std::size_t kTexCoordKind = 4;
const std::array<ArrayKind, 5> kArrayKinds = {{
    {GL_VERTEX_ARRAY, GL_VERTEX_ARRAY_SIZE, GL_VERTEX_ARRAY_TYPE, GL_VERTEX_ARRAY_STRIDE,
     GL_VERTEX_ARRAY_POINTER, GL_VERTEX_ARRAY_BUFFER_BINDING, glVertexPointer},
    {GL_NORMAL_ARRAY, 0, GL_NORMAL_ARRAY_TYPE, GL_NORMAL_ARRAY_STRIDE, GL_NORMAL_ARRAY_POINTER,
     GL_NORMAL_ARRAY_BUFFER_BINDING,
     [](GLint /*size*/, GLenum type, GLsizei stride, const void* pointer) {
       glNormalPointer(type, stride, pointer);
     }},
    {GL_COLOR_ARRAY, GL_COLOR_ARRAY_SIZE, GL_COLOR_ARRAY_TYPE, GL_COLOR_ARRAY_STRIDE,
     GL_COLOR_ARRAY_POINTER, GL_COLOR_ARRAY_BUFFER_BINDING, glColorPointer},
    {GL_SECONDARY_COLOR_ARRAY, GL_SECONDARY_COLOR_ARRAY_SIZE, GL_SECONDARY_COLOR_ARRAY_TYPE,
     GL_SECONDARY_COLOR_ARRAY_STRIDE, GL_SECONDARY_COLOR_ARRAY_POINTER,
     GL_SECONDARY_COLOR_ARRAY_BUFFER_BINDING, glSecondaryColorPointer},
    {GL_TEXTURE_COORD_ARRAY, GL_TEXTURE_COORD_ARRAY_SIZE, GL_TEXTURE_COORD_ARRAY_TYPE,
     GL_TEXTURE_COORD_ARRAY_STRIDE, GL_TEXTURE_COORD_ARRAY_POINTER,
     GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING, glTexCoordPointer},
}};

constexpr GLint kTextureUnits = 8;

GLint integer(GLenum name) {
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}

void makeStoreOf(GLuint buffer, GLenum target, std::size_t size, const void* data, GLenum usage) {
  glBindBufferARB(target, buffer);
  makeStore(target, size, data, usage);
  glBindBufferARB(target, 0);
}

const void* asOffset(std::ptrdiff_t offset) {
  return reinterpret_cast<const void*>(offset);
}

}  // namespace

BufferRange::Backing BufferRange::makeBacking(GLsizei size, void* memory) const {
  Backing backing;
  glGenBuffersARB(1, &backing.buffer);
  if (storage_ == Storage::kFilled) {
    backing.base = static_cast<std::byte*>(memory);
    backing.size = static_cast<std::size_t>(size);
    makeStoreOf(backing.buffer, GL_ARRAY_BUFFER, backing.size, nullptr, GL_STATIC_DRAW);
    return backing;
  }
  // Only whole pages can be pinned; neighbouring ranges may share some.
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto first = reinterpret_cast<std::uintptr_t>(memory) & ~(page - 1);
  const auto end =
      (reinterpret_cast<std::uintptr_t>(memory) + static_cast<std::uintptr_t>(size) + page - 1) &
      ~(page - 1);
  backing.base = reinterpret_cast<const std::byte*>(first);
  backing.size = end - first;
  makeStoreOf(backing.buffer, GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, backing.size, backing.base,
              GL_STREAM_DRAW);
  return backing;
}

void BufferRange::declare(GLuint object, GLsizei size, void* memory) {
  if (object != 0) {
    last_ = makeBacking(size, memory);
    rowBuffers_[object] = last_.buffer;
    glBindBufferARB(GL_ARRAY_BUFFER, last_.buffer);
    return;
  }
  // Making a buffer and filling it for the first time costs many times the filling alone, so a
  // filled one serves every frame in which the memory has the same size.
  const bool keptFits = storage_ == Storage::kFilled && frame_.buffer != 0 &&
                        frame_.size == static_cast<std::size_t>(size);
  if (keptFits) {
    frame_.base = static_cast<const std::byte*>(memory);
  } else {
    releaseKeptStorage();
    frame_ = makeBacking(size, memory);
  }
  last_ = frame_;
  frameDeclared_ = true;
}

void BufferRange::enable() {
  if (!frameDeclared_) {
    return;  // the named objects point into their buffers already
  }
  const GLint unit = integer(GL_CLIENT_ACTIVE_TEXTURE);
  const GLint buffer = integer(GL_ARRAY_BUFFER_BINDING);
  glBindBufferARB(GL_ARRAY_BUFFER, frame_.buffer);
  for (std::size_t kind = 0; kind < kTexCoordKind; ++kind) {
    pointIntoBuffer(kind, unit);
  }
  for (GLint i = 0; i < kTextureUnits; ++i) {
    glClientActiveTextureARB(GL_TEXTURE0 + static_cast<GLenum>(i));
    pointIntoBuffer(kTexCoordKind, GL_TEXTURE0 + i);
  }
  glClientActiveTextureARB(static_cast<GLenum>(unit));
  glBindBufferARB(GL_ARRAY_BUFFER, static_cast<GLuint>(buffer));
}

void BufferRange::pointIntoBuffer(std::size_t kind, GLint unit) {
  const ArrayKind& array = kArrayKinds[kind];
  if (glIsEnabled(array.array) == GL_FALSE || integer(array.buffer) != 0) {
    return;
  }
  ClientArray saved{kind, unit, 3, integer(array.type), integer(array.stride), nullptr};
  if (array.size != 0) {
    saved.size = integer(array.size);
  }
  glGetPointerv(array.pointer, &saved.pointer);
  const std::ptrdiff_t offset = static_cast<const std::byte*>(saved.pointer) - frame_.base;
  if (offset < 0 || static_cast<std::size_t>(offset) >= frame_.size) {
    return;
  }
  moved_[movedCount_++] = saved;
  array.point(saved.size, static_cast<GLenum>(saved.type), saved.stride, asOffset(offset));
}

void BufferRange::flush(GLsizei size, void* memory) {
  if (storage_ == Storage::kFilled) {
    const GLint buffer = integer(GL_ARRAY_BUFFER_BINDING);
    glBindBufferARB(GL_ARRAY_BUFFER, last_.buffer);
    glBufferSubDataARB(GL_ARRAY_BUFFER, static_cast<const std::byte*>(memory) - last_.base, size,
                       memory);
    glBindBufferARB(GL_ARRAY_BUFFER, static_cast<GLuint>(buffer));
  }
}

void BufferRange::disable() {
  glBindBufferARB(GL_ARRAY_BUFFER, 0);
  if (movedCount_ == 0) {
    return;
  }
  // A pointer that still led into a deleted buffer would make later draws blank, without an error.
  const GLint unit = integer(GL_CLIENT_ACTIVE_TEXTURE);
  for (std::size_t i = 0; i < movedCount_; ++i) {
    const ClientArray& saved = moved_[i];
    glClientActiveTextureARB(static_cast<GLenum>(saved.unit));
    kArrayKinds[saved.kind].point(saved.size, static_cast<GLenum>(saved.type), saved.stride,
                                  saved.pointer);
  }
  movedCount_ = 0;
  glClientActiveTextureARB(static_cast<GLenum>(unit));
}

void BufferRange::withdraw(GLuint object) {
  if (object == 0) {
    frameDeclared_ = false;
    if (storage_ == Storage::kPinned) {
      releaseKeptStorage();
    }
    return;
  }
  const auto row = rowBuffers_.find(object);
  if (row != rowBuffers_.end()) {
    glDeleteBuffersARB(1, &row->second);
    rowBuffers_.erase(row);
  }
}

const void* BufferRange::address(const void* client) const {
  return asOffset(static_cast<const std::byte*>(client) - last_.base);
}

void BufferRange::releaseKeptStorage() {
  if (frame_.buffer != 0) {
    glDeleteBuffersARB(1, &frame_.buffer);
    frame_ = {};
  }
}
