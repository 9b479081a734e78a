/// The mesh's memory and the order in which it is built.
#include <cmath>
#include <numeric>

#include "engine/SorvantaTest.h"

void SorvantaTest::updateVertices() {
  vertexData.reset();
  layout = layoutMesh(topologyOf(primitiveMode), detail);
  vertexDataSize = kBytesPerVertex * layout.vertexCount;
  vertexData = allocateBlock<std::byte>(vertexDataSize, "the mesh's vertex arrays");
  arrays = placeArrays(vertexData.get(), layout.vertexCount);

  // The terrain run comes first: it seeds the random sequence that the colours continue.
  const std::size_t side = detail + std::size_t{1};
  runTerrain(layout, allocateBlock<float>(side * side, "the terrain's height field").get());

  buildGrid(layout, arrays);
  const GLCoord3* const v = arrays.vertices;
  triArea = computeTriArea(v[0].x, v[0].y, v[1].x, v[1].y, v[2].x, v[2].y);
  copyTexCoords(layout, arrays);
  buildSecondaryColors(layout, arrays);
  if (vertexColors) {
    buildRandomColors(layout, arrays);
  }
  buildNormals(layout, arrays);

  indices.reset();
  indices = allocateBlock<GLuint>(layout.vertexCount, "the mesh's index array");
  std::iota(indices.get(), indices.get() + layout.vertexCount, 0U);

  updateDataStructures();
}

float SorvantaTest::computeTriArea(float x0, float y0, float x1, float y1, float x2, float y2) {
  const auto distance = [](float dx, float dy) { return std::sqrt(dx * dx + dy * dy); };
  const float a = distance(x1 - x0, y1 - y0);
  const float b = distance(x2 - x1, y2 - y1);
  const float c = distance(x0 - x2, y0 - y2);
  const float p = (a + b + c) * 0.5F;
  return std::sqrt(((p - a) * p) * (p - b) * (p - c));
}
