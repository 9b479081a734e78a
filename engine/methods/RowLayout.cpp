#include "engine/methods/RowLayout.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/gl/DriverMemory.h"

namespace {

/// The arrays that make up a vertex, in its order.
constexpr std::size_t kMostTriples = 3;
struct Sources {
  std::array<const GLCoord3*, kMostTriples> triples;
  std::array<const GLCoord2*, kTextureUnitCount> pairs;
};

/// Writing vertices is measured where a method does it for every model: the number of arrays is
/// known when it is compiled, and positions alone are copied as they lie.
template <std::size_t... triples, std::size_t... pairs>
void interleave(const Sources sources, std::size_t count, std::byte* out,
                std::index_sequence<triples...> /*counted*/,
                std::index_sequence<pairs...> /*counted*/) {
  if constexpr (sizeof...(triples) == 1 && sizeof...(pairs) == 0) {
    std::memcpy(out, sources.triples[0], count * sizeof(GLCoord3));
    return;
  }
  const auto append = [&out](const auto* from) {
    std::memcpy(out, from, sizeof *from);
    out += sizeof *from;
  };
  for (std::size_t v = 0; v < count; ++v) {
    (append(sources.triples[triples] + v), ...);
    (append(sources.pairs[pairs] + v), ...);
  }
}

using Interleaver = void (*)(const Sources& sources, std::size_t count, std::byte* out);

template <std::size_t triples, std::size_t pairs>
void interleaveCounted(const Sources& sources, std::size_t count, std::byte* out) {
  interleave(sources, count, out, std::make_index_sequence<triples>(),
             std::make_index_sequence<pairs>());
}

/// By how many triples there are beside the position, and by how many pairs.
constexpr auto kInterleavers = []<std::size_t... pairs>(std::index_sequence<pairs...>) {
  using Row = std::array<Interleaver, sizeof...(pairs)>;
  return std::array{Row{interleaveCounted<1, pairs>...}, Row{interleaveCounted<2, pairs>...},
                    Row{interleaveCounted<3, pairs>...}};
}
(std::make_index_sequence<kTextureUnitCount + 1>());

}  // namespace

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
  Sources sources{};
  std::size_t triples = 0;
  std::size_t pairs = 0;
  const auto appendTriple = [&](bool present, const GLCoord3* array) {
    if (present) {
      sources.triples[triples++] = array + first;
    }
  };
  appendTriple(true, arrays.vertices);
  appendTriple(layout.offsets.normalOffset != 0, arrays.normals);
  appendTriple(layout.offsets.colorOffset != 0, arrays.colors);
  appendTriple(layout.offsets.secondaryColorOffset != 0, arrays.secondaryColors);
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    if (layout.offsets.texCoordOffsets[unit] != 0) {
      sources.pairs[pairs++] = arrays.texCoords[unit] + first;
    }
  }
  kInterleavers[triples - 1][pairs](sources, count, static_cast<std::byte*>(row));
}

void interleaveIntoBuffer(const RowLayout& layout, const MeshArrays& arrays, std::size_t first,
                          std::size_t count) {
  void* const memory = glMapBufferARB(GL_ARRAY_BUFFER_ARB, GL_WRITE_ONLY_ARB);
  if (memory == nullptr) {
    endWithoutBuffer(count * layout.stride);
  }
  interleaveRow(layout, arrays, first, count, memory);
  if (glUnmapBufferARB(GL_ARRAY_BUFFER_ARB) == GL_FALSE) {
    std::fputs("UnmapBufferARB failed!\n", stderr);
    std::exit(EXIT_FAILURE);
  }
}

RowUnits::RowUnits(const RowOffsets& offsets) {
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    if (offsets.texCoordOffsets[unit] != 0) {
      units_[count_++] = static_cast<std::uint8_t>(unit);
    }
  }
}
