#include "engine/methods/BufferedModel.h"

#include "platform/gl/DriverMemory.h"

BufferedModel::BufferedModel(const ModelSource& source) {
  const RowOffsets& offsets = source.vertex.offsets;
  const RowUnits units(offsets);
  bindVertices();
  pointRowArrays<ArrayEnables::kAfter>(offsets.attributes(), offsets,
                                       static_cast<GLsizei>(source.vertex.stride), 0, units);
}

void BufferedModel::bindVertices() const {
  driver().vertexArrayObjects.bind(object_.name());
  glBindBufferARB(GL_ARRAY_BUFFER, buffer_.name());
}

void BufferedModel::release() {
  glBindBufferARB(GL_ARRAY_BUFFER, 0);
}

void storeModel(const ModelSource& source) {
  makeStore(GL_ARRAY_BUFFER, source.byteSize(), nullptr, GL_STATIC_DRAW);
  interleaveIntoBuffer(source.vertex, source.arrays, 0, source.layout.vertexCount);
}

Strips::Strips(const MeshLayout& layout, std::uint32_t first)
    : count_(static_cast<GLsizei>(layout.stripCount)),
      counts_(layout.stripCount, static_cast<GLsizei>(layout.verticesPerStrip)) {
  for (std::uint32_t strip = 0; strip < layout.stripCount; ++strip) {
    firsts_.push_back(static_cast<GLint>(first + strip * layout.verticesPerStrip));
  }
}
