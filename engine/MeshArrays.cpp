/// The mesh's memory and the order in which it is built.
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
  return triangleArea(x0, y0, x1, y1, x2, y2);
}
