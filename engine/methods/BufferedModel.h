/// What the methods that draw a whole model from one buffer have in common.
#pragma once

#include <vector>

#include "engine/methods/RetainedModel.h"
#include "platform/gl/OwnedNames.h"

/// A buffer for interleaved vertices and the vertex array object that draws from it.
class BufferedModel : public RetainedModel {
 public:
  void bind() override { bindVertices(); }
  void release() override;

 protected:
  /// Leaves both bound, and the buffer without a store.
  explicit BufferedModel(const ModelSource& source);

 private:
  void bindVertices() const;

  VertexArrayObject object_;
  Buffer buffer_;
};

/// Gives the bound buffer a static store with the model's vertices in it.
void storeModel(const ModelSource& source);

/// The strips of a model, all of which one call draws.
class Strips {
 public:
  /// Of the model whose first vertex is the buffer's vertex `first`.
  explicit Strips(const MeshLayout& layout, std::uint32_t first = 0);

  void draw(GLenum mode) const { glMultiDrawArrays(mode, firsts_.data(), counts_.data(), count_); }

 private:
  GLsizei count_;
  std::vector<GLint> firsts_;
  std::vector<GLsizei> counts_;
};
