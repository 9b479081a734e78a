// The terrain run against the plain algorithm.
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "model/Terrain.h"

namespace {

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

}  // namespace
