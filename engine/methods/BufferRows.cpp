/// The buffer-object methods: each grid row, interleaved, in a buffer of its own.
#include <array>
#include <utility>

#include "engine/SorvantaTest.h"
#include "engine/methods/RowObjects.h"
#include "platform/gl/Driver.h"

namespace {

void release(std::vector<VertexBufferRecord>& records) {
  for (const VertexBufferRecord& record : records) {
    glDeleteBuffersARB(1, &record.buffer);
    driver().vertexArrayObjects.remove(1, &record.vertexArrayObject);
  }
  records.clear();
}

/// Binds each row's buffer and points the frame's enabled arrays into it.
template <RowAttributes has>
void drawRowBuffers(std::span<const VertexBufferRecord> records, GLenum mode,
                    std::uint32_t vertices, int reps, bool thrash) {
  const auto n = static_cast<GLsizei>(vertices);
  const RowUnits allUnits(records.front().offsets);
  const std::span<const std::uint8_t> units = allUnits;
  repeatModel(reps, thrash, [=] {
    for (const VertexBufferRecord& record : records) {
      glBindBufferARB(GL_ARRAY_BUFFER_ARB, record.buffer);
      pointRowArrays<ArrayEnables::kNone>(has, record.offsets, static_cast<GLsizei>(record.stride),
                                          0, units);
      glDrawArrays(mode, 0, n);
    }
  });
}

/// The draws above, by the attributes that the index says.
constexpr auto kDrawRowBuffers = []<std::size_t... bits>(std::index_sequence<bits...>) {
  return std::array{&drawRowBuffers<RowAttributes{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0,
                                                  (bits & 8) != 0}>...};
}
(std::make_index_sequence<16>());

}  // namespace

void SorvantaTest::rebuildVertexBufferObjects(unsigned long usage) {
  deleteVertexBufferObjects();
  const VertexArrayFunctions& objects = driver().vertexArrayObjects;
  const RowLayout row = rowLayout();
  const std::uint32_t m = layout.verticesPerRow;
  const std::uint32_t size = m * row.stride;
  const RowUnits units(row.offsets);

  vertexBufferObjects.reserve(detail);
  for (std::size_t k = 0; k < detail; ++k) {
    VertexBufferRecord& record =
        vertexBufferObjects.emplace_back(VertexBufferRecord{row.offsets, 0, 0, row.stride, size});
    objects.generate(1, &record.vertexArrayObject);
    objects.bind(record.vertexArrayObject);
    glGenBuffersARB(1, &record.buffer);
    glBindBufferARB(GL_ARRAY_BUFFER_ARB, record.buffer);
    pointRowArrays<ArrayEnables::kAfter>(row.offsets.attributes(), row.offsets,
                                         static_cast<GLsizei>(row.stride), 0, units);
    glBufferDataARB(GL_ARRAY_BUFFER_ARB, static_cast<GLsizeiptrARB>(size), nullptr,
                    static_cast<GLenum>(usage));
    interleaveIntoBuffer(row, arrays, k * m, m);
  }
  unbindRowBuffers();
}

void SorvantaTest::rebuildStaticBuffers() {
  rebuildVertexBufferObjects(GL_STATIC_DRAW_ARB);
}

void SorvantaTest::rebuildStreamBuffers() {
  rebuildVertexBufferObjects(GL_STREAM_DRAW_ARB);
}

void SorvantaTest::drawUsingVertexBufferObjects(int reps) {
  if (!glInitialized || vertexBufferObjects.empty()) {
    return;
  }
  if (drawMethod != kDrawArraysWithStaticVBO) {
    drawRowObjects(getVertexBufferObjects(), primitiveMode, layout.verticesPerRow, reps, thrash);
    return;
  }
  // All rows have the same attributes; which ones is settled here, not once per row.
  const RowAttributes has = vertexBufferObjects.front().offsets.attributes();
  const std::size_t index = (has.normal ? 1U : 0U) | (has.color ? 2U : 0U) |
                            (has.secondaryColor ? 4U : 0U) | (has.texCoords ? 8U : 0U);
  kDrawRowBuffers[index](vertexBufferObjects, primitiveMode, layout.verticesPerRow, reps, thrash);
}

void SorvantaTest::deleteVertexBufferObjects() {
  release(vertexBufferObjects);
  release(extraVertexBufferObjects);
}

void SorvantaTest::unbindRowBuffers() {
  glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
  driver().vertexArrayObjects.bind(0);
}
