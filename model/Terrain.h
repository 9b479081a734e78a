/// Height fields by fault formation: straight random faults raise one side of the field, a running
/// filter erodes it, and the heights are scaled to 0 to 1.
///
/// The technique is described in J. Shankel, "Fractal Terrain Generation - Fault Formation", Game
/// Programming Gems (2000).
///
/// A field holds `size` x `size` floats; the height at column x and row z is element
/// x + z * size. Randomness comes from rand(), which is never seeded here.
#pragma once

/// Fills `heights` anew. Iteration i of `iterations` raises one side of a fault by
/// maxDelta - (maxDelta - minDelta) * i / iterations, and filters the field after it where i is a
/// multiple of `iterationsPerFilter` (0: never). Draws four numbers from rand() per iteration, and
/// two more whenever the fault's second point meets the first.
/// `size` is at least 2: with a smaller field the two points could never differ.
void MakeTerrainFault(float* heights, int size, int iterations, int maxDelta, int minDelta,
                      int iterationsPerFilter, float filter);

/// Filters every row in both directions, then every column in both directions. A `filter` of 0
/// changes nothing, one near 1 smooths strongly.
void FilterHeightField(float* heights, int size, float filter);

/// The running filter v = v * filter + (1 - filter) * h along `count` samples that lie `stride`
/// floats apart; it starts from the first sample.
void FilterHeightBand(float* band, int stride, int count, float filter);

/// Scales the heights so that the lowest becomes 0 and the highest 1. A flat field stays as it is.
void NormalizeTerrain(float* heights, int size);

/// A random number from `low` to `high`, both included.
float RangedRandom(float low, float high);
