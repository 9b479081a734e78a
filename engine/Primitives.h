/// The primitives as GL draws them.
#pragma once

#include <algorithm>
#include <array>

#include "model/Mesh.h"
#include "platform/gl/GL.h"
#include "words/Primitives.h"

/// The GL mode of each primitive, at the index of its value.
inline constexpr std::array<GLenum, 10> kPrimitiveModes = {
    GL_TRIANGLE_STRIP, GL_TRIANGLE_FAN, GL_TRIANGLES, GL_QUAD_STRIP, GL_QUADS,
    GL_POLYGON,        GL_LINE_STRIP,   GL_LINE_LOOP, GL_LINES,      GL_POINTS,
};

/// The primitive of one of those modes.
constexpr Primitive primitiveOf(GLenum mode) {
  const auto* const found = std::find(kPrimitiveModes.begin(), kPrimitiveModes.end(), mode);
  return static_cast<Primitive>(found - kPrimitiveModes.begin());
}

constexpr Topology topologyOf(GLenum mode) {
  return mode == GL_TRIANGLES ? Topology::kTriangles
         : mode == GL_QUADS   ? Topology::kQuads
                              : Topology::kStrips;
}
