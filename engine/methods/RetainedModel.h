/// What a draw method keeps of the model in a class of its own, and how it draws from there.
#pragma once

#include <cstddef>
#include <memory>

#include "engine/methods/RowLayout.h"
#include "model/Mesh.h"
#include "platform/gl/GL.h"

/// What a model is made from. The arrays stay the test object's; until they change, which makes
/// the model anew, they may be read again.
struct ModelSource {
  MeshLayout layout;
  MeshArrays arrays;
  RowLayout vertex;  ///< as it is interleaved
  GLenum mode;

  /// Of all vertices, interleaved.
  std::size_t byteSize() const { return std::size_t{layout.vertexCount} * vertex.stride; }
  void interleave(void* out) const { interleaveRow(vertex, arrays, 0, layout.vertexCount, out); }
};

/// Owns its GL objects: the context must be current when it is made and when it is destroyed.
/// Making it may leave in force what bind sets.
class RetainedModel {
 public:
  RetainedModel() = default;
  RetainedModel(const RetainedModel&) = delete;
  RetainedModel& operator=(const RetainedModel&) = delete;
  virtual ~RetainedModel() = default;

  /// Sets the state to draw with, after a frame's client-array binding.
  virtual void bind() = 0;
  /// Draws the whole model `reps` times; this is measured.
  virtual void draw(int reps, bool thrash) = 0;
  /// Takes back what bind set, but for the vertex array object: a frame binds the default one
  /// itself.
  virtual void release() = 0;
};

using RetainedModelMaker = std::unique_ptr<RetainedModel>(const ModelSource& source);

// The makers of all methods, by their sources.

// MultiDraw.cpp.
RetainedModelMaker makeMultiDraw;
RetainedModelMaker makeMultiDrawIndirect;

// ElementsWithRestart.cpp.
RetainedModelMaker makeElementsWithRestart;

// Streams.cpp.
RetainedModelMaker makeSubDataStream;
RetainedModelMaker makeMapRangeStream;
RetainedModelMaker makePersistentStream;

/// How many models the persistent stream's buffer holds.
constexpr unsigned int kRingSize = 3;
