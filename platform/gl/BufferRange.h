/// Vertex array ranges for drivers without them: a buffer object stands behind each range.
#pragma once

#include <array>
#include <cstddef>
#include <unordered_map>

#include "platform/gl/DriverMemory.h"
#include "platform/gl/VertexArrayRange.h"

class BufferRange final : public VertexArrayRange {
 public:
  enum class Storage {
    kPinned,  ///< the buffer is the client's own memory: nothing is copied
    kFilled,  ///< the buffer is filled at the flush
  };

  explicit BufferRange(Storage storage) : storage_(storage) {}

  GLuint maximumVertices(GLuint bytesPerVertex) const override {
    return kLargestBuffer / bytesPerVertex;
  }
  void declare(GLuint object, GLsizei size, void* memory) override;
  void enable() override;
  void flush(GLsizei size, void* memory) override;
  void disable() override;
  void withdraw(GLuint object) override;
  const void* address(const void* client) const override;
  void releaseKeptStorage() override;

 private:
  /// A buffer and the client address that its offset 0 stands for.
  struct Backing {
    GLuint buffer = 0;
    const std::byte* base = nullptr;
    std::size_t size = 0;
  };
  /// An array of the default object as it was before it was pointed into the buffer.
  struct ClientArray {
    std::size_t kind;
    GLint unit, size, type, stride;
    void* pointer;
  };
  static constexpr std::size_t kMostClientArrays = 12;

  Backing makeBacking(GLsizei size, void* memory) const;
  void pointIntoBuffer(std::size_t kind, GLint unit);

  Storage storage_;
  Backing last_;                                   ///< of the range declared last
  std::unordered_map<GLuint, GLuint> rowBuffers_;  ///< by vertex array object
  Backing frame_;  ///< of the default object's range, or kept for it
  bool frameDeclared_ = false;
  std::array<ClientArray, kMostClientArrays> moved_{};
  std::size_t movedCount_ = 0;
};
