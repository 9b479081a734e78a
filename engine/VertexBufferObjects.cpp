/// The buffer-object methods: each grid row, interleaved, in a buffer of its own.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "engine/RowObjects.h"
#include "engine/SorvantaTest.h"
#include "platform/gl/BufferMemory.h"
#include "platform/gl/Driver.h"

namespace {

/// Writes a row into the bound buffer.
void fillBuffer(const RowLayout& row, const MeshArrays& arrays, std::size_t first,
                std::size_t count) {
  void* const memory = glMapBufferARB(GL_ARRAY_BUFFER_ARB, GL_WRITE_ONLY_ARB);
  if (memory == nullptr) {
    endWithoutBuffer(count * row.stride);
  }
  interleaveRow(row, arrays, first, count, memory);
  if (glUnmapBufferARB(GL_ARRAY_BUFFER_ARB) == GL_FALSE) {
    std::fputs("UnmapBufferARB failed!\n", stderr);
    std::exit(EXIT_FAILURE);
  }
}

void release(std::vector<VertexBufferRecord>& records) {
  for (const VertexBufferRecord& record : records) {
    glDeleteBuffersARB(1, &record.buffer);
    driver().vertexArrayObjects.remove(1, &record.vertexArrayObject);
  }
  records.clear();
}

}  // namespace

void SorvantaTest::rebuildVertexBufferObjects(unsigned long usage) {
  deleteVertexBufferObjects();
  const VertexArrayObjects& objects = driver().vertexArrayObjects;
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
    fillBuffer(row, arrays, k * m, m);
  }
  unbindRowBuffers();
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
  static constexpr auto kByAttributes = []<std::size_t... bits>(std::index_sequence<bits...>) {
    return std::array<DrawRows, sizeof...(bits)>{&SorvantaTest::drawRowBuffers<RowAttributes{
        (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0}>...};
  }
  (std::make_index_sequence<16>());
  const RowAttributes has = vertexBufferObjects.front().offsets.attributes();
  const DrawRows drawRows = kByAttributes[(has.normal ? 1 : 0) | (has.color ? 2 : 0) |
                                          (has.secondaryColor ? 4 : 0) | (has.texCoords ? 8 : 0)];
  (this->*drawRows)(reps);
}

/// Binds each row's buffer and points the frame's enabled arrays into it.
template <RowAttributes has>
void SorvantaTest::drawRowBuffers(int reps) const {
  const GLenum mode = primitiveMode;
  const auto n = static_cast<GLsizei>(layout.verticesPerRow);
  const std::span<const VertexBufferRecord> records = vertexBufferObjects;
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

void SorvantaTest::deleteVertexBufferObjects() {
  release(vertexBufferObjects);
  release(extraVertexBufferObjects);
}

void SorvantaTest::unbindRowBuffers() {
  glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
  driver().vertexArrayObjects.bind(0);
}
