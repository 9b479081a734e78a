// The mesh, attribute by attribute.
#include <cmath>
#include <cstddef>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "model/Mesh.h"

namespace {

/// The parts that the mesh of a run is built from.
struct Built {
  Built(Topology topology, std::uint32_t detail)
      : layout(layoutMesh(topology, detail)),
        block(std::size_t{29} * layout.vertexCount),
        arrays(placeArrays(block.data(), layout.vertexCount)) {
    buildGrid(layout, arrays);
    copyTexCoords(layout, arrays);
    buildSecondaryColors(layout, arrays);
    buildNormals(layout, arrays);
  }
  MeshLayout layout;
  std::vector<float> block;
  MeshArrays arrays;
};

TEST(Mesh, IsCutIntoStripsTrianglesAndQuads) {
  using T = Topology;
  const std::tuple<T, std::uint32_t, std::size_t, std::string> outlines[] = {
      {T::kStrips, 1, 0, "60,60 340,60 60,340 340,340 "},
      {T::kStrips, 2, 6, "200,60 340,60 200,200 340,200 200,340 340,340 "},
      {T::kTriangles, 1, 0, "60,60 340,60 60,340 60,340 340,60 340,340 "},
      {T::kTriangles, 2, 12, "200,60 340,60 200,200 200,200 340,60 340,200 "},
      {T::kQuads, 1, 0, "60,60 340,60 340,340 60,340 "},
      {T::kQuads, 2, 8, "200,60 340,60 340,200 200,200 "}};
  for (const auto& [topology, detail, first, outline] : outlines) {
    const Built mesh(topology, detail);
    std::ostringstream text;
    for (std::size_t i = first; text.str().size() < outline.size(); ++i) {
      const GLCoord3 v = mesh.arrays.vertices[i];
      text << std::lround(v.x) << ',' << std::lround(v.y) << ' ';
    }
    EXPECT_EQ(text.str(), outline);
  }
}

TEST(Mesh, FillsEveryAttributeInEveryLayout) {
  using Counts = std::vector<std::uint32_t>;  // vertices, strips, in a strip, in a row
  const std::pair<Topology, Counts> layouts[] = {{Topology::kStrips, {8320, 64, 130, 130}},
                                                 {Topology::kTriangles, {24576, 1, 24576, 384}},
                                                 {Topology::kQuads, {16384, 1, 16384, 256}}};
  for (const auto& [topology, counts] : layouts) {
    const MeshLayout l = layoutMesh(topology, 64);
    EXPECT_EQ(Counts({l.vertexCount, l.stripCount, l.verticesPerStrip, l.verticesPerRow}), counts);
    for (const std::uint32_t detail : {1U, 2U, 3U, 49U, 64U}) {
      const Built mesh(topology, detail);
      const MeshArrays& a = mesh.arrays;
      EXPECT_EQ(a.fogCoords, &mesh.block[std::size_t{28} * mesh.layout.vertexCount]);
      const float cell = 280.0F / static_cast<float>(detail);
      const float step = 1.0F / static_cast<float>(detail);
      const auto line = [=](float from) { return std::round((from - 60.0F) / cell); };
      for (std::uint32_t i = 0; i < mesh.layout.vertexCount; ++i) {
        const GLCoord3 v = a.vertices[i];
        const GLCoord2 t = a.texCoords[0][i];
        // To the bit: strips take coordinates from the grid, independent primitives from places.
        for (const auto& [place, coordinate] : {std::pair{v.x, t.s}, {v.y, t.t}}) {
          ASSERT_EQ(place, cell * line(place) + 60.0F);
          ASSERT_EQ(coordinate,
                    topology == Topology::kStrips ? step * line(place) : (place - 60.0F) / 280.0F);
        }
        for (const GLCoord2* unit : a.texCoords) {
          ASSERT_TRUE(unit[i].s == t.s && unit[i].t == t.t);
        }
        const GLCoord3 color = a.secondaryColors[i];
        ASSERT_TRUE(color.x == 1 - t.s && color.y == 0.5F && color.z == t.t);
        ASSERT_EQ(std::abs(a.normals[i].x) + std::abs(a.normals[i].y) + v.z, 0);
        ASSERT_EQ(a.normals[i].z, 1);
      }
    }
  }
  const GLCoord3 tilted = calcNormal({0, 0, 0}, {2, 0, 0}, {0, 0, 5});
  EXPECT_TRUE(tilted.x == 0 && tilted.y == -1 && tilted.z == 0);
}

}  // namespace
