#include "model/Mesh.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "model/Terrain.h"

namespace {

constexpr float kOrigin = 60.0F;
constexpr float kExtent = 280.0F;

/// A vertex of the grid: line r in x and line c in y.
struct GridPoint {
  std::uint32_t r, c;
};

/// Entry `j` of row `row` in the strips' zig-zag between the lines `row` and `row` + 1.
GridPoint zigZag(std::uint32_t row, std::uint32_t j) {
  return {row + (j & 1), j / 2};
}

/// Calls emit(point) for every vertex of the layout, in order.
template <typename Emit>
void forEachVertex(const MeshLayout& layout, Emit emit) {
  const std::uint32_t d = layout.detail;
  for (std::uint32_t row = 0; row < d; ++row) {
    switch (layout.topology) {
      case Topology::kStrips:
        for (std::uint32_t j = 0; j < 2 * d + 2; ++j) {
          emit(zigZag(row, j));
        }
        break;
      case Topology::kTriangles:
        for (std::uint32_t k = 0; k < 2 * d; ++k) {
          // Every second triangle of a strip winds the other way round.
          const std::uint32_t odd = k & 1;
          emit(zigZag(row, k + odd));
          emit(zigZag(row, k + 1 - odd));
          emit(zigZag(row, k + 2));
        }
        break;
      case Topology::kQuads:
        for (std::uint32_t j = 0; j < 2 * d; j += 2) {
          emit(zigZag(row, j));
          emit(zigZag(row, j + 1));
          emit(zigZag(row, j + 3));
          emit(zigZag(row, j + 2));
        }
        break;
    }
  }
}

}  // namespace

MeshLayout layoutMesh(Topology topology, std::uint32_t detail) {
  const std::uint32_t d = detail;
  switch (topology) {
    case Topology::kTriangles:
      return {topology, d, 6 * d * d, 1, 6 * d * d, 6 * d};
    case Topology::kQuads:
      return {topology, d, 4 * d * d, 1, 4 * d * d, 4 * d};
    case Topology::kStrips:
      break;
  }
  return {topology, d, d * (2 * d + 2), d, 2 * d + 2, 2 * d + 2};
}

MeshArrays placeArrays(void* block, std::uint32_t vertexCount) {
  const std::size_t n = vertexCount;
  auto* const coordinates3 = static_cast<GLCoord3*>(block);
  // From here on the block holds pairs: coordinates and pairs are whole floats, packed.
  auto* const coordinates2 = static_cast<GLCoord2*>(static_cast<void*>(coordinates3 + 4 * n));
  MeshArrays arrays{};
  arrays.vertices = coordinates3;
  arrays.colors = coordinates3 + n;
  arrays.secondaryColors = coordinates3 + 2 * n;
  arrays.normals = coordinates3 + 3 * n;
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    arrays.texCoords[unit] = coordinates2 + unit * n;
  }
  arrays.fogCoords = static_cast<float*>(static_cast<void*>(coordinates2 + kTextureUnitCount * n));
  return arrays;
}

void buildGrid(const MeshLayout& layout, const MeshArrays& arrays) {
  const float width = kExtent / static_cast<float>(layout.detail);
  const auto line = [=](std::uint32_t i) { return width * static_cast<float>(i) + kOrigin; };

  GLCoord3* vertex = arrays.vertices;
  forEachVertex(layout, [&](GridPoint p) { *vertex++ = {line(p.r), line(p.c), 0.0F}; });

  GLCoord2* texCoord = arrays.texCoords[0];
  if (layout.topology == Topology::kStrips) {
    const float step = 1.0F / static_cast<float>(layout.detail);
    forEachVertex(layout, [&](GridPoint p) {
      *texCoord++ = {step * static_cast<float>(p.r), step * static_cast<float>(p.c)};
    });
  } else {
    // Independent primitives take theirs from the position, which rounds differently.
    forEachVertex(layout, [&](GridPoint p) {
      *texCoord++ = {(line(p.r) - kOrigin) / kExtent, (line(p.c) - kOrigin) / kExtent};
    });
  }
}

void copyTexCoords(const MeshLayout& layout, const MeshArrays& arrays) {
  for (std::size_t unit = 1; unit < kTextureUnitCount; ++unit) {
    std::copy_n(arrays.texCoords[0], layout.vertexCount, arrays.texCoords[unit]);
  }
}

void buildSecondaryColors(const MeshLayout& layout, const MeshArrays& arrays) {
  std::transform(arrays.texCoords[0], arrays.texCoords[0] + layout.vertexCount,
                 arrays.secondaryColors, [](GLCoord2 t) {
                   return GLCoord3{1.0F - t.s, 0.5F, t.t};
                 });
}

void buildRandomColors(const MeshLayout& layout, const MeshArrays& arrays) {
  const auto component = [] { return static_cast<float>((rand() % 100) * 0.01); };
  for (std::uint32_t i = 0; i < layout.vertexCount; ++i) {
    GLCoord3& color = arrays.colors[i];
    color.x = component();
    color.y = component();
    color.z = component();
  }
}

void buildNormals(const MeshLayout& layout, const MeshArrays& arrays) {
  const GLCoord3* v = arrays.vertices;
  std::fill_n(arrays.normals, layout.vertexCount, calcNormal(v[0], v[1], v[2]));
}

void runTerrain(const MeshLayout& layout, float* scratch) {
  constexpr unsigned int kSeed = 129;
  srand(kSeed);
  MakeTerrainFault(scratch, static_cast<int>(layout.detail) + 1, 32, 0, 0, 1, 0.0F);
}

GLCoord3 calcNormal(GLCoord3 a, GLCoord3 b, GLCoord3 c) {
  const GLCoord3 u{a.x - b.x, a.y - b.y, a.z - b.z};
  const GLCoord3 v{b.x - c.x, b.y - c.y, b.z - c.z};
  const GLCoord3 n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
  const float length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
  return {n.x / length, n.y / length, n.z / length};
}
