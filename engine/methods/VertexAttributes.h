/// The attributes that a vertex may have beside its position, as bits of a word.
#pragma once

#include <cstddef>

constexpr unsigned int kNormalBit = 1;
constexpr unsigned int kColorBit = 2;
constexpr unsigned int kSecondaryColorBit = 4;
/// Texture coordinates of a unit: 8, 16, 32, ...
constexpr unsigned int texCoordBit(std::size_t unit) {
  return 8U << unit;
}
