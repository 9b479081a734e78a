/// The method that draws all strips with one call over their indices, in which one that stands for
/// no vertex ends a strip.
#include "engine/Memory.h"
#include "engine/methods/BufferedModel.h"
#include "engine/methods/Repetition.h"
#include "platform/gl/DriverMemory.h"

namespace {

constexpr GLuint kRestart = 0xFFFFFFFF;

class ElementsWithRestart final : public BufferedModel {
 public:
  explicit ElementsWithRestart(const ModelSource& source)
      : BufferedModel(source),
        mode_(source.mode),
        indexCount_(
            static_cast<GLsizei>(source.layout.vertexCount + source.layout.stripCount - 1)) {
    storeModel(source);
    const auto count = static_cast<std::size_t>(indexCount_);
    const auto indices = allocateBlock<GLuint>(count, "the indices of the strips");
    const std::uint32_t n = source.layout.verticesPerStrip;
    std::size_t at = 0;
    for (GLuint vertex = 0; vertex < source.layout.vertexCount; ++vertex) {
      if (vertex != 0 && vertex % n == 0) {
        indices[at++] = kRestart;
      }
      indices[at++] = vertex;
    }
    glBindBufferARB(GL_ELEMENT_ARRAY_BUFFER, indices_.name());  // the vertex array object keeps it
    makeStore(GL_ELEMENT_ARRAY_BUFFER, count * sizeof(GLuint), indices.get(), GL_STATIC_DRAW);
  }

  void bind() override {
    BufferedModel::bind();
    driver().primitiveRestart.enable(kRestart);
  }
  void draw(int reps, bool thrash) override {
    repeatModel(reps, thrash, [mode = mode_, count = indexCount_] {
      glDrawElements(mode, count, GL_UNSIGNED_INT, nullptr);
    });
  }
  void release() override {
    driver().primitiveRestart.disable();
    BufferedModel::release();
  }

 private:
  GLenum mode_;
  GLsizei indexCount_;
  Buffer indices_;
};

}  // namespace

std::unique_ptr<RetainedModel> makeElementsWithRestart(const ModelSource& source) {
  return std::make_unique<ElementsWithRestart>(source);
}
