/// The primitive modes in which the mesh can be drawn.
#pragma once

#include <array>

#include "model/Mesh.h"
#include "platform/gl/GL.h"

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

struct PrimitiveTraits {
  Primitive primitive;
  const char* word;  ///< on the command line; null where it is not offered there
  GLenum mode;
};

/// One row per primitive, at the index of its value.
inline constexpr std::array<PrimitiveTraits, 10> kPrimitives = {{
    {kTriStrip, "triStrip", GL_TRIANGLE_STRIP},
    {kTriFan, nullptr, GL_TRIANGLE_FAN},
    {kTriangles, "triangles", GL_TRIANGLES},
    {kQuadStrip, "quadStrip", GL_QUAD_STRIP},
    {kQuads, "quads", GL_QUADS},
    {kPolygon, nullptr, GL_POLYGON},
    {kLineStrip, "lineStrip", GL_LINE_STRIP},
    {kLineLoop, nullptr, GL_LINE_LOOP},
    {kLines, "lines", GL_LINES},
    {kPoints, "points", GL_POINTS},
}};

/// Whether figures of that mode count quads; those of all others count triangles.
constexpr bool countsQuads(GLenum mode) {
  return mode == GL_QUADS || mode == GL_QUAD_STRIP;
}

constexpr Topology topologyOf(GLenum mode) {
  return mode == GL_TRIANGLES ? Topology::kTriangles
         : mode == GL_QUADS   ? Topology::kQuads
                              : Topology::kStrips;
}
