#include "model/Terrain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace {

struct Point {
  int x, z;
};

Point randomPoint(int size) {
  const int x = rand() % size;
  const int z = rand() % size;
  return {x, z};
}

struct Fault {
  Point first, second;
};

Fault randomFault(int size) {
  const Point first = randomPoint(size);
  Point second = randomPoint(size);
  while (second.x == first.x && second.z == first.z) {
    second = randomPoint(size);
  }
  return {first, second};
}

void raiseOneSide(float* heights, int size, const Fault& fault, float delta) {
  const int dx = fault.second.x - fault.first.x;
  const int dz = fault.second.z - fault.first.z;
  for (int z = 0; z < size; ++z) {
    float* row = heights + static_cast<std::ptrdiff_t>(z) * size;
    for (int x = 0; x < size; ++x) {
      if (dz * (x - fault.first.x) - dx * (z - fault.first.z) > 0) {
        row[x] += delta;
      }
    }
  }
}

}  // namespace

void MakeTerrainFault(float* heights, int size, int iterations, int maxDelta, int minDelta,
                      int iterationsPerFilter, float filter) {
  std::fill_n(heights, static_cast<std::ptrdiff_t>(size) * size, 0.0F);

  // Steps that cannot change a bit of the field are left out. While the field is all +0, adding 0
  // and filtering by a finite factor give +0 again. While no filter has run on a field with
  // relief, every height is a sum of integers, finite and never -0, so that adding 0 and filtering
  // by 0 give the same height.
  bool flat = true;
  bool sumsOfIntegers = true;
  for (int i = 0; i < iterations; ++i) {
    const int delta = maxDelta - ((maxDelta - minDelta) * i) / iterations;
    const Fault fault = randomFault(size);
    if (delta != 0 || !sumsOfIntegers) {
      raiseOneSide(heights, size, fault, static_cast<float>(delta));
      flat = false;
    }
    if (iterationsPerFilter != 0 && i % iterationsPerFilter == 0) {
      const bool changesNothing =
          (flat && std::isfinite(filter)) || (sumsOfIntegers && filter == 0.0F);
      if (!changesNothing) {
        FilterHeightField(heights, size, filter);
        flat = false;
        sumsOfIntegers = false;
      }
    }
  }
  if (!flat) {
    NormalizeTerrain(heights, size);
  }
}

void FilterHeightField(float* heights, int size, float filter) {
  const auto line = [=](int column, int row) {
    return heights + column + static_cast<std::ptrdiff_t>(row) * size;
  };
  for (int row = 0; row < size; ++row) {
    FilterHeightBand(line(0, row), 1, size, filter);
  }
  for (int row = 0; row < size; ++row) {
    FilterHeightBand(line(size - 1, row), -1, size, filter);
  }
  for (int column = 0; column < size; ++column) {
    FilterHeightBand(line(column, 0), size, size, filter);
  }
  for (int column = 0; column < size; ++column) {
    FilterHeightBand(line(column, size - 1), -size, size, filter);
  }
}

void FilterHeightBand(float* band, int stride, int count, float filter) {
  const float keep = 1.0F - filter;
  float v = band[0];
  for (int k = 1; k < count; ++k) {
    const std::ptrdiff_t place = static_cast<std::ptrdiff_t>(k) * stride;
    v = v * filter + keep * band[place];
    band[place] = v;
  }
}

void NormalizeTerrain(float* heights, int size) {
  const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(size) * size;
  float max = heights[0];
  float min = heights[0];
  for (std::ptrdiff_t i = 1; i < count; ++i) {
    if (heights[i] > max) {
      max = heights[i];
    } else {
      min = std::min(min, heights[i]);
    }
  }
  if (!(min < max)) {
    return;
  }
  const float range = max - min;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    heights[i] = (heights[i] - min) / range;
  }
}

float RangedRandom(float low, float high) {
  constexpr float kInverseRandomRange = 4.656613e-10F;  // 2^-31, for a rand() up to 2^31 - 1
  return low + (high - low) * static_cast<float>(rand()) * kInverseRandomRange;
}
