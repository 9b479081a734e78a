// The mesh as the test object holds it, the terrain run against the plain algorithm, and the
// history of figures.
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "model/Terrain.h"
#include "tests/support/EngineTest.h"

namespace {

class Mesh : public EngineTest {};

TEST_F(Mesh, LaysOutStripsTrianglesAndQuads) {
  const std::tuple<const char*, std::size_t, std::string> outlines[] = {
      {"-p points -d 1", 0, "60,60 340,60 60,340 340,340 "},
      {"-p triStrip -d 2", 6, "200,60 340,60 200,200 340,200 200,340 340,340 "},
      {"-p triangles -d 1", 0, "60,60 340,60 60,340 60,340 340,60 340,340 "},
      {"-p triangles -d 2", 12, "200,60 340,60 200,200 200,200 340,60 340,200 "},
      {"-p quads -d 1", 0, "60,60 340,60 340,340 60,340 "},
      {"-p quads -d 2", 8, "200,60 340,60 340,200 200,200 "}};
  for (const auto& [options, first, outline] : outlines) {
    apply(options);
    std::ostringstream text;
    for (std::size_t i = first; text.str().size() < outline.size(); ++i) {
      const GLCoord3& v = test.getArrays().vertices[i];
      text << std::lround(v.x) << ',' << std::lround(v.y) << ' ';
    }
    EXPECT_EQ(text.str(), outline);
  }
}

TEST_F(Mesh, FillsEveryAttributeInEveryLayout) {
  using Counts = std::vector<std::uint32_t>;  // vertices, strips, in a strip, in a row
  const std::pair<std::string, Counts> layouts[] = {{"-c -p triStrip -d ", {8320, 64, 130, 130}},
                                                    {"-p triangles -d ", {24576, 1, 24576, 384}},
                                                    {"-p quads -d ", {16384, 1, 16384, 256}}};
  for (const auto& [options, counts] : layouts) {
    for (const unsigned int detail : {1U, 2U, 64U}) {
      apply(options + std::to_string(detail));
      const MeshArrays& a = test.getArrays();
      EXPECT_EQ(Calls::size_type(a.fogCoords - &a.vertices->x), 28UL * test.modelVertexCount());
      EXPECT_NEAR(test.getTriArea(), 39200.0F / static_cast<float>(detail * detail), 4);
      for (std::uint32_t i = 0; i < test.modelVertexCount(); ++i) {
        const GLCoord2 t = a.texCoords[0][i];
        const GLCoord3 v = a.vertices[i];
        ASSERT_LT(std::abs(60 + 280 * t.s - v.x) + std::abs(60 + 280 * t.t - v.y), 1e-3F);
        for (const GLCoord2* unit : a.texCoords) {
          ASSERT_TRUE(unit[i].s == t.s && unit[i].t == t.t);
        }
        const GLCoord3 color = a.secondaryColors[i];
        ASSERT_TRUE(color.x == 1 - t.s && color.y == 0.5F && color.z == t.t);
        ASSERT_EQ(std::abs(a.normals[i].x) + std::abs(a.normals[i].y) + v.z, 0);
        ASSERT_EQ(a.normals[i].z, 1);
      }
    }
    const MeshLayout& l = test.getLayout();
    EXPECT_EQ(Counts({l.vertexCount, l.stripCount, l.verticesPerStrip, l.verticesPerRow}), counts);
    // 128 draws for the terrain's faults; at this detail none is repeated.
    srand(129);
    for (int i = 0; i < 128; ++i) {
      rand();
    }
    for (std::size_t i = 0; i < 300; ++i) {
      EXPECT_EQ((&test.getArrays().colors->x)[i], static_cast<float>((rand() % 100) * 0.01));
    }
  }
}

using Field = std::vector<float>;

/// The run without any step left out.
void plainTerrain(Field& heights, int size, int maxDelta, int minDelta, int pace, float filter) {
  for (int i = 0; i < 12; ++i) {
    const int delta = maxDelta - (maxDelta - minDelta) * i / 12;
    const int x1 = rand() % size;
    const int z1 = rand() % size;
    int x2 = x1;
    int z2 = z1;
    while (x1 == x2 && z1 == z2) {
      x2 = rand() % size;
      z2 = rand() % size;
    }
    for (int k = 0; k < size * size; ++k) {
      const bool raised = (z2 - z1) * (k % size - x1) - (x2 - x1) * (k / size - z1) > 0;
      heights[static_cast<std::size_t>(k)] += static_cast<float>(raised ? delta : 0);
    }
    if (pace != 0 && i % pace == 0) {
      FilterHeightField(heights.data(), size, filter);
    }
  }
  NormalizeTerrain(heights.data(), size);
}

TEST(Terrain, LeavesNothingOutThatChangesTheField) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::pair<int, int> deltas[] = {{0, 0}, {32, 0}, {0, -9}, {-3, 3}, {5, 5}};
  const float filters[] = {0.0F, -0.0F, 0.3F, -0.5F, 1.0F, 1.5F, 1e-40F, kInfinity};
  for (int run = 0; run < 3 * 5 * 3 * 8; ++run) {
    const int size = std::array{2, 3, 9}.at(run % 3U);
    const auto [maxDelta, minDelta] = deltas[run / 3 % 5];
    const int pace = std::array{0, 1, 3}.at(run / 15 % 3U);
    const float filter = filters[run / 45];
    Field expected(static_cast<std::size_t>(size * size));
    Field actual(expected.size(), 99);
    srand(7);
    plainTerrain(expected, size, maxDelta, minDelta, pace, filter);
    const int nextDraw = rand();
    srand(7);
    MakeTerrainFault(actual.data(), size, 12, maxDelta, minDelta, pace, filter);
    EXPECT_EQ(rand(), nextDraw);
    EXPECT_EQ(std::memcmp(actual.data(), expected.data(), 4 * actual.size()), 0)
        << size << ' ' << maxDelta << ' ' << minDelta << ' ' << pace << ' ' << filter;
  }
}

TEST(Terrain, FiltersAndNormalizes) {
  Field field = {1, 0, 0, 0};
  FilterHeightField(field.data(), 2, 0.5F);
  EXPECT_EQ(field, (Field{0.5625F, 0.375F, 0.375F, 0.25F}));
  NormalizeTerrain(field.data(), 2);
  EXPECT_EQ(field, (Field{1, 0.4F, 0.4F, 0}));
  Field flat = {3, 3, 3, 3};
  NormalizeTerrain(flat.data(), 2);
  EXPECT_EQ(flat, Field(4, 3));
}

TEST(PerformanceHistory, TrimsTheExtremesAndKeepsTheLatestSamples) {
  PerformanceHistory history;
  EXPECT_EQ(history.meanDiscardingHighLow(2), 0);
  const std::pair<float, float> samples[] = {
      {100, 100}, {3, 51.5F}, {1, 104.0F / 3}, {4, 27}, {2, 3}};
  for (const auto& [sample, trimmedMean] : samples) {
    history.addSample(sample);
    EXPECT_EQ(history.meanDiscardingHighLow(2), trimmedMean);
  }
  EXPECT_EQ(history.meanDiscardingHighLow(-1), 22);
  for (int sample = 6; sample <= 31; ++sample) {
    history.addSample(static_cast<float>(sample));
  }
  EXPECT_EQ(history.getSamples().size(), 30U);
  EXPECT_EQ(history.getSamples().front(), 3);
  EXPECT_EQ(history.getSampleCount(), 31);
  history.clearSamples();
  EXPECT_EQ(history.getSampleCount(), 0);
  EXPECT_EQ(history.mean(), 0);
}

}  // namespace
