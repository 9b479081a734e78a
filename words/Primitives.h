/// The primitives in which the mesh can be drawn, and their words on the command line.
#pragma once

#include <array>
#include <string_view>

#include "words/Rows.h"

enum Primitive {
  kTriStrip = 0,
  kTriFan = 1,
  kTriangles = 2,
  kQuadStrip = 3,
  kQuads = 4,
  kPolygon = 5,
  kLineStrip = 6,
  kLineLoop = 7,
  kLines = 8,
  kPoints = 9,
};

struct PrimitiveWord {
  Primitive primitive;
  std::string_view word;
};

/// Those that the command line offers.
inline constexpr std::array<PrimitiveWord, 7> kPrimitiveWords = {{
    {kTriStrip, "triStrip"},
    {kQuadStrip, "quadStrip"},
    {kLineStrip, "lineStrip"},
    {kLines, "lines"},
    {kPoints, "points"},
    {kQuads, "quads"},
    {kTriangles, "triangles"},
}};

/// The row of the primitive with that word; null where there is none.
constexpr const PrimitiveWord* primitiveNamed(std::string_view word) {
  return rowWith(kPrimitiveWords, &PrimitiveWord::word, word);
}

/// Whether figures of that primitive count quads; those of all others count triangles.
constexpr bool countsQuads(Primitive primitive) {
  return primitive == kQuads || primitive == kQuadStrip;
}

/// The same of the primitive with that word.
constexpr bool countsQuads(std::string_view word) {
  const PrimitiveWord* const row = primitiveNamed(word);
  return row != nullptr && countsQuads(row->primitive);
}
