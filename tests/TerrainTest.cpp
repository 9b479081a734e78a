#include <bit>
#include <cstdlib>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "model/Terrain.h"

namespace {

using Field = std::vector<float>;

/// The run without any step left out.
void plainTerrain(Field& heights, int size, int iterations, int maxDelta, int minDelta,
                  int iterationsPerFilter, float filter) {
  heights.assign(heights.size(), 0);
  for (int i = 0; i < iterations; ++i) {
    const auto delta = static_cast<float>(maxDelta - ((maxDelta - minDelta) * i) / iterations);
    const int x1 = rand() % size;
    const int z1 = rand() % size;
    int x2 = rand() % size;
    int z2 = rand() % size;
    while (x1 == x2 && z1 == z2) {
      x2 = rand() % size;
      z2 = rand() % size;
    }
    for (int x = 0; x < size; ++x) {
      for (int z = 0; z < size; ++z) {
        if ((z2 - z1) * (x - x1) - (x2 - x1) * (z - z1) > 0) {
          heights[static_cast<std::size_t>(x + z * size)] += delta;
        }
      }
    }
    if (iterationsPerFilter != 0 && i % iterationsPerFilter == 0) {
      FilterHeightField(heights.data(), size, filter);
    }
  }
  NormalizeTerrain(heights.data(), size);
}

std::vector<std::uint32_t> bitsOf(const Field& field) {
  std::vector<std::uint32_t> bits;
  for (const float height : field) {
    bits.push_back(std::bit_cast<std::uint32_t>(height));
  }
  return bits;
}

TEST(Terrain, LeavesNothingOutThatChangesTheField) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const int size : {2, 3, 9}) {
    for (const auto& [maxDelta, minDelta] : {std::pair{0, 0}, {32, 0}, {0, -9}, {-3, 3}, {5, 5}}) {
      for (const int iterationsPerFilter : {0, 1, 3}) {
        for (const float filter : {0.0F, -0.0F, 0.3F, -0.5F, 1.0F, 1.5F, 1e-40F, kInfinity}) {
          const std::size_t count = static_cast<std::size_t>(size) * size;
          Field expected(count);
          srand(7);
          plainTerrain(expected, size, 12, maxDelta, minDelta, iterationsPerFilter, filter);
          const int nextDraw = rand();
          Field actual(count, 99);
          srand(7);
          MakeTerrainFault(actual.data(), size, 12, maxDelta, minDelta, iterationsPerFilter,
                           filter);
          EXPECT_EQ(bitsOf(actual), bitsOf(expected))
              << size << ' ' << maxDelta << ' ' << minDelta << ' ' << filter;
          EXPECT_EQ(rand(), nextDraw);
        }
      }
    }
  }
}

TEST(Terrain, FiltersAndNormalizes) {
  Field field = {1, 0, 0, 0};
  FilterHeightField(field.data(), 2, 0.5F);
  EXPECT_EQ(field, (Field{0.5625F, 0.375F, 0.375F, 0.25F}));

  Field heights = {2, 4, 6, 8};
  NormalizeTerrain(heights.data(), 2);
  EXPECT_EQ(heights, (Field{0, 1.0F / 3, 2.0F / 3, 1}));
  Field flat = {3, 3, 3, 3};
  NormalizeTerrain(flat.data(), 2);
  EXPECT_EQ(flat, Field(4, 3));

  Field band = {8, 99, 4, 99, 0};
  FilterHeightBand(band.data() + 4, -2, 3, 0.25F);
  EXPECT_EQ(band, (Field{6.75F, 99, 3, 99, 0}));
}

TEST(Terrain, RangedRandomStaysInItsRange) {
  srand(1);
  for (int i = 0; i < 1000; ++i) {
    const float value = RangedRandom(-2, 3);
    EXPECT_GE(value, -2);
    EXPECT_LE(value, 3);
  }
}

}  // namespace
