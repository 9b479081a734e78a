#include "platform/gl/VertexArrayRange.h"

#include <algorithm>
#include <limits>

#include "platform/gl/BufferRange.h"

namespace {

class NativeRange final : public VertexArrayRange {
 public:
  explicit NativeRange(GLuint maximumElements) : maximumElements_(maximumElements) {}

  GLuint maximumVertices(GLuint bytesPerVertex) const override {
    return std::min(maximumElements_, kLargestBuffer / bytesPerVertex);
  }
  void declare(GLuint /*object*/, GLsizei size, void* memory) override {
    glVertexArrayRangeAPPLE(size, memory);
  }
  void enable() override { glEnableClientState(GL_VERTEX_ARRAY_RANGE_APPLE); }
  void flush(GLsizei size, void* memory) override { glFlushVertexArrayRangeAPPLE(size, memory); }
  void disable() override { glDisableClientState(GL_VERTEX_ARRAY_RANGE_APPLE); }
  void withdraw(GLuint /*object*/) override { glVertexArrayRangeAPPLE(0, nullptr); }

 private:
  GLuint maximumElements_;
};

class NoRange final : public VertexArrayRange {
 public:
  GLuint maximumVertices(GLuint /*bytesPerVertex*/) const override { return 0; }
  void declare(GLuint /*object*/, GLsizei /*size*/, void* /*memory*/) override {}
  void enable() override {}
  void flush(GLsizei /*size*/, void* /*memory*/) override {}
  void disable() override {}
  void withdraw(GLuint /*object*/) override {}
};

}  // namespace

std::unique_ptr<VertexArrayRange> makeVertexArrayRange(RangeProvider provider,
                                                       GLuint maximumElements) {
  switch (provider) {
    case RangeProvider::kNative:
      return std::make_unique<NativeRange>(maximumElements);
    case RangeProvider::kPinned:
      return std::make_unique<BufferRange>(BufferRange::Storage::kPinned);
    case RangeProvider::kFilled:
      return std::make_unique<BufferRange>(BufferRange::Storage::kFilled);
    case RangeProvider::kNone:
      break;
  }
  return std::make_unique<NoRange>();
}
