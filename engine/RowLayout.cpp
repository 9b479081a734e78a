#include "engine/RowLayout.h"

#include <algorithm>
#include <cstring>

RowAttributes RowOffsets::attributes() const {
  const bool anyUnit = std::any_of(texCoordOffsets.begin(), texCoordOffsets.end(),
                                   [](std::uint32_t offset) { return offset != 0; });
  return {normalOffset != 0, colorOffset != 0, secondaryColorOffset != 0, anyUnit};
}

RowLayout layoutRow(bool normals, bool colors, bool secondaryColors,
                    std::span<const bool, kTextureUnitCount> textureEnabled) {
  RowLayout layout{};
  layout.stride = sizeof(GLCoord3);
  const auto append = [&layout](std::uint32_t& offset, std::size_t size) {
    offset = layout.stride;
    layout.stride += static_cast<std::uint32_t>(size);
  };
  if (normals) {
    append(layout.offsets.normalOffset, sizeof(GLCoord3));
  } else {
    if (colors) {
      append(layout.offsets.colorOffset, sizeof(GLCoord3));
    }
    if (secondaryColors) {
      append(layout.offsets.secondaryColorOffset, sizeof(GLCoord3));
    }
  }
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    if (textureEnabled[unit]) {
      append(layout.offsets.texCoordOffsets[unit], sizeof(GLCoord2));
    }
  }
  return layout;
}

void interleaveRow(const RowLayout& layout, const MeshArrays& arrays, std::size_t first,
                   std::size_t count, void* row) {
  struct Source {
    const std::byte* next;
    std::size_t size;
  };
  std::array<Source, 4 + kTextureUnitCount> sources{};
  std::size_t sourceCount = 0;
  const auto append = [&](const auto* array) {
    sources[sourceCount++] = {reinterpret_cast<const std::byte*>(array + first), sizeof(*array)};
  };
  append(arrays.vertices);
  if (layout.offsets.normalOffset != 0) {
    append(arrays.normals);
  }
  if (layout.offsets.colorOffset != 0) {
    append(arrays.colors);
  }
  if (layout.offsets.secondaryColorOffset != 0) {
    append(arrays.secondaryColors);
  }
  const RowUnits units(layout.offsets);
  for (const std::uint8_t unit : std::span<const std::uint8_t>(units)) {
    append(arrays.texCoords[unit]);
  }

  auto* out = static_cast<std::byte*>(row);
  for (std::size_t v = 0; v < count; ++v) {
    for (std::size_t i = 0; i < sourceCount; ++i) {
      std::memcpy(out, sources[i].next, sources[i].size);
      sources[i].next += sources[i].size;
      out += sources[i].size;
    }
  }
}

RowUnits::RowUnits(const RowOffsets& offsets) {
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    if (offsets.texCoordOffsets[unit] != 0) {
      units_[count_++] = static_cast<std::uint8_t>(unit);
    }
  }
}
