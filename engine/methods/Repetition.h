/// The loop that every drawing operation runs.
#pragma once

#include <concepts>

#include "platform/gl/GL.h"

/// Every attribute group. GL_ALL_ATTRIB_BITS of current headers has bits that name no group.
constexpr GLbitfield kAllAttribGroups = 0x000FFFFF;

/// Draws the model `reps` times by calling `drawModel`; with `thrash` every repetition saves and
/// restores all attribute groups. Without it the loop tests for nothing.
template <std::integral Count, typename DrawModel>
void repeatModel(Count reps, bool thrash, DrawModel drawModel) {
  if (thrash) {
    for (Count r = 0; r < reps; ++r) {
      glPushAttrib(kAllAttribGroups);
      drawModel();
      glPopAttrib();
    }
  } else {
    for (Count r = 0; r < reps; ++r) {
      drawModel();
    }
  }
}
