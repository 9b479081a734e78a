/// How the emitters walk through their arrays.
#pragma once

#include <cstddef>

#include "platform/gl/GL.h"

/// The element that lies `offset` bytes into the array. Two running offsets, one for each size of
/// element, leave a vertex loop fewer instructions beside its calls than an index or a running
/// pointer per array do.
template <typename Coordinates>
const GLfloat* elementAt(const Coordinates* array, std::size_t offset) {
  return reinterpret_cast<const GLfloat*>(reinterpret_cast<const std::byte*>(array) + offset);
}
