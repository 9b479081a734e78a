/// The vertex-array-object method: a private interleaved copy of each grid row, declared a vertex
/// array range of an object of its own.
#include "engine/SorvantaTest.h"
#include "engine/methods/RowObjects.h"
#include "platform/gl/Driver.h"

void SorvantaTest::rebuildVertexArrayObjects() {
  deleteVertexArrayObjects();
  const VertexArrayFunctions& objects = driver().vertexArrayObjects;
  VertexArrayRange& range = *driver().vertexArrayRange;
  const RowLayout row = rowLayout();
  const std::uint32_t m = layout.verticesPerRow;
  const std::uint32_t size = m * row.stride;
  const RowUnits units(row.offsets);

  vertexArrayObjects.reserve(detail);
  for (std::size_t k = 0; k < detail; ++k) {
    VertexArrayRecord& record = vertexArrayObjects.emplace_back(VertexArrayRecord{
        row.offsets, 0, size, allocateBlock<std::byte>(size, "the vertex array objects' rows")});
    std::byte* const data = record.data.get();
    objects.generate(1, &record.vertexArrayObject);
    objects.bind(record.vertexArrayObject);
    range.declare(record.vertexArrayObject, static_cast<GLsizei>(size), data);
    pointRowArrays<ArrayEnables::kBefore>(
        row.offsets.attributes(), row.offsets, static_cast<GLsizei>(row.stride),
        reinterpret_cast<std::uintptr_t>(range.address(data)), units);
    interleaveRow(row, arrays, k * m, m, data);
    range.flush(static_cast<GLsizei>(size), data);
  }
  range.disable();
  objects.bind(0);
}

void SorvantaTest::drawUsingVertexArrayObjects(int reps) {
  if (!glInitialized) {
    return;
  }
  drawRowObjects(getVertexArrayObjects(), primitiveMode, layout.verticesPerRow, reps, thrash);
}

void SorvantaTest::deleteVertexArrayObjects() {
  VertexArrayRange& range = *driver().vertexArrayRange;
  for (const VertexArrayRecord& record : vertexArrayObjects) {
    range.disable();
    range.withdraw(record.vertexArrayObject);
    driver().vertexArrayObjects.remove(1, &record.vertexArrayObject);
  }
  vertexArrayObjects.clear();
}

void SorvantaTest::enableRowRanges() {
  if (modelTriangleCountPerStrip() <= maxVertexArraySize()) {
    driver().vertexArrayRange->enable();
  }
}

void SorvantaTest::disableRowRanges() {
  driver().vertexArrayRange->disable();
  driver().vertexArrayObjects.bind(0);
}
