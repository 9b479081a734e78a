/// The interleaved vertex of the methods that draw from copies of the mesh.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "model/Mesh.h"
#include "platform/gl/GL.h"

/// What an array method sends besides the position.
struct RowAttributes {
  bool normal;
  bool color;
  bool secondaryColor;
  bool texCoords;  ///< of any unit
};

/// Byte offsets in an interleaved vertex; 0 for an absent attribute, as the position comes first.
struct RowOffsets {
  std::uint32_t vertexOffset;
  std::uint32_t normalOffset;
  std::uint32_t colorOffset;
  std::uint32_t secondaryColorOffset;
  std::array<std::uint32_t, kTextureUnitCount> texCoordOffsets;

  RowAttributes attributes() const;
};

struct RowLayout {
  RowOffsets offsets;
  std::uint32_t stride;  ///< bytes from vertex to vertex: 12 to 100
};

/// Position, then the normal or else colour and secondary colour, then the coordinates of the
/// enabled texture units. With a normal there are no colours.
RowLayout layoutRow(bool normals, bool colors, bool secondaryColors,
                    std::span<const bool, kTextureUnitCount> textureEnabled);

/// Writes `count` vertices, from `first` on, into `row` of count * stride bytes, front to back.
void interleaveRow(const RowLayout& layout, const MeshArrays& arrays, std::size_t first,
                   std::size_t count, void* row);

/// Writes those vertices into the buffer bound to GL_ARRAY_BUFFER, which has a store of that size.
/// Ends the program with status 1 where the driver cannot map or unmap it.
void interleaveIntoBuffer(const RowLayout& layout, const MeshArrays& arrays, std::size_t first,
                          std::size_t count);

/// Whether and when pointing an array enables it too.
enum class ArrayEnables { kNone, kBefore, kAfter };

inline const void* rowPointer(std::uintptr_t row, std::uint32_t offset) {
  return reinterpret_cast<const void*>(row + offset);
}

/// Points the array of every attribute in `has` into the row at `row`, a client address or an
/// offset into the bound buffer; `units` are those with texture coordinates, the last of which is
/// left active. Inlined so that a constant `has` leaves no test behind.
template <ArrayEnables enables>
[[gnu::always_inline]] inline void pointRowArrays(RowAttributes has, const RowOffsets& offsets,
                                                  GLsizei stride, std::uintptr_t row,
                                                  std::span<const std::uint8_t> units) {
  const auto enable = [](ArrayEnables when, GLenum array) {
    if (enables == when) {
      glEnableClientState(array);
    }
  };
  enable(ArrayEnables::kBefore, GL_VERTEX_ARRAY);
  glVertexPointer(3, GL_FLOAT, stride, rowPointer(row, offsets.vertexOffset));
  enable(ArrayEnables::kAfter, GL_VERTEX_ARRAY);
  if (has.normal) {
    enable(ArrayEnables::kBefore, GL_NORMAL_ARRAY);
    glNormalPointer(GL_FLOAT, stride, rowPointer(row, offsets.normalOffset));
    enable(ArrayEnables::kAfter, GL_NORMAL_ARRAY);
  }
  if (has.color) {
    enable(ArrayEnables::kBefore, GL_COLOR_ARRAY);
    glColorPointer(3, GL_FLOAT, stride, rowPointer(row, offsets.colorOffset));
    enable(ArrayEnables::kAfter, GL_COLOR_ARRAY);
  }
  if (has.secondaryColor) {
    enable(ArrayEnables::kBefore, GL_SECONDARY_COLOR_ARRAY);
    glSecondaryColorPointer(3, GL_FLOAT, stride, rowPointer(row, offsets.secondaryColorOffset));
    enable(ArrayEnables::kAfter, GL_SECONDARY_COLOR_ARRAY);
  }
  if (has.texCoords) {
    for (const std::uint8_t unit : units) {
      glActiveTextureARB(GL_TEXTURE0_ARB + unit);
      glClientActiveTextureARB(GL_TEXTURE0_ARB + unit);
      if (enables != ArrayEnables::kNone) {
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
      }
      glTexCoordPointer(2, GL_FLOAT, stride, rowPointer(row, offsets.texCoordOffsets[unit]));
    }
  }
}

/// The texture units that have coordinates, in ascending order.
class RowUnits {
 public:
  explicit RowUnits(const RowOffsets& offsets);
  operator std::span<const std::uint8_t>() const& { return {units_.data(), count_}; }
  operator std::span<const std::uint8_t>() const&& = delete;

 private:
  std::array<std::uint8_t, kTextureUnitCount> units_{};
  std::size_t count_ = 0;
};
