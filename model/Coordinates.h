/// The element types of the per-vertex arrays. Both are packed, so that arrays of them serve as
/// OpenGL client arrays.
#pragma once

/// A position or normal (x, y, z), or a colour (r, g, b).
struct GLCoord3 {
  float x, y, z;
};

/// Texture coordinates (s, t).
struct GLCoord2 {
  float s, t;
};

static_assert(sizeof(GLCoord3) == 12 && sizeof(GLCoord2) == 8);
