/// The methods that draw all strips from one static buffer with one call, which finds the strips in
/// client memory or in a buffer of its own.
#include "engine/methods/BufferedModel.h"
#include "engine/methods/Repetition.h"
#include "platform/gl/DriverMemory.h"

namespace {

class MultiDraw final : public BufferedModel {
 public:
  explicit MultiDraw(const ModelSource& source)
      : BufferedModel(source), mode_(source.mode), strips_(source.layout) {
    storeModel(source);
  }

  void draw(int reps, bool thrash) override {
    repeatModel(reps, thrash, [this] { strips_.draw(mode_); });
  }

 private:
  GLenum mode_;
  Strips strips_;
};

/// A draw as GL reads it from a buffer.
struct IndirectDraw {
  GLuint count;
  GLuint instanceCount;
  GLuint first;
  GLuint baseInstance;
};

class MultiDrawIndirect final : public BufferedModel {
 public:
  explicit MultiDrawIndirect(const ModelSource& source)
      : BufferedModel(source),
        mode_(source.mode),
        drawCount_(static_cast<GLsizei>(source.layout.stripCount)) {
    storeModel(source);
    std::vector<IndirectDraw> draws;
    const std::uint32_t n = source.layout.verticesPerStrip;
    for (std::uint32_t strip = 0; strip < source.layout.stripCount; ++strip) {
      draws.push_back({n, 1, strip * n, 0});
    }
    glBindBufferARB(GL_DRAW_INDIRECT_BUFFER, draws_.name());
    makeStore(GL_DRAW_INDIRECT_BUFFER, draws.size() * sizeof(IndirectDraw), draws.data(),
              GL_STATIC_DRAW);
  }

  void bind() override {
    BufferedModel::bind();
    glBindBufferARB(GL_DRAW_INDIRECT_BUFFER, draws_.name());
  }
  void draw(int reps, bool thrash) override {
    repeatModel(reps, thrash, [mode = mode_, count = drawCount_] {
      glMultiDrawArraysIndirect(mode, nullptr, count, 0);
    });
  }
  void release() override {
    glBindBufferARB(GL_DRAW_INDIRECT_BUFFER, 0);
    BufferedModel::release();
  }

 private:
  GLenum mode_;
  GLsizei drawCount_;
  Buffer draws_;
};

}  // namespace

std::unique_ptr<RetainedModel> makeMultiDraw(const ModelSource& source) {
  return std::make_unique<MultiDraw>(source);
}

std::unique_ptr<RetainedModel> makeMultiDrawIndirect(const ModelSource& source) {
  return std::make_unique<MultiDrawIndirect>(source);
}
