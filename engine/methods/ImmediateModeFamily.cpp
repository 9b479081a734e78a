#include "engine/methods/ImmediateModeFamily.h"

#include <array>
#include <cstddef>
#include <type_traits>

#include "engine/methods/ElementAt.h"
#include "engine/methods/VertexAttributes.h"
#include "engine/methods/VertexCalls.h"

namespace {

constexpr unsigned int kT0 = texCoordBit(0);
constexpr unsigned int kT1 = texCoordBit(1);
constexpr unsigned int kT2 = texCoordBit(2);

using Direct = DirectCalls<glSecondaryColor3fv, glMultiTexCoord2fv>;
using Macro = TableCalls<ContextTable>;

/// Directly, unit 0 has the plain call, whatever other units are sent; through the table it is sent
/// beside other units as they are.
template <typename Calls>
constexpr bool sendsUnit0Plainly(unsigned int attributes) {
  return std::is_same_v<Calls, Direct> || (attributes & (kT1 | kT2)) == 0;
}

template <unsigned int attributes, typename Calls>
void emitStrips(SORVANTA_EMITTER_PARAMETERS) {
  const Calls calls;
  const std::size_t stripBytes = (2 * detail + 2) * sizeof(GLCoord3);
  const auto unit = [texCoords](unsigned int bit, std::size_t index) -> const GLCoord2* {
    return (attributes & bit) != 0 ? texCoords[index] : nullptr;
  };
  const GLCoord2* const texCoords0 = unit(kT0, 0);
  const GLCoord2* const texCoords1 = unit(kT1, 1);
  const GLCoord2* const texCoords2 = unit(kT2, 2);
  std::size_t offset3 = 0;
  std::size_t offset2 = 0;
  for (unsigned long strip = 0; strip < detail; ++strip) {
    calls.begin(static_cast<GLenum>(mode));
    for (const std::size_t end = offset3 + stripBytes; offset3 != end;
         offset3 += sizeof(GLCoord3), offset2 += sizeof(GLCoord2)) {
      if constexpr ((attributes & kNormalBit) != 0) {
        calls.normal(elementAt(normals, offset3));
      }
      if constexpr ((attributes & kColorBit) != 0) {
        calls.color(elementAt(colors, offset3));
      }
      if constexpr ((attributes & kSecondaryColorBit) != 0) {
        calls.secondaryColor(elementAt(secondaryColors, offset3));
      }
      if constexpr ((attributes & kT0) != 0) {
        if constexpr (sendsUnit0Plainly<Calls>(attributes)) {
          calls.texCoord(elementAt(texCoords0, offset2));
        } else {
          calls.multiTexCoord(GL_TEXTURE0, elementAt(texCoords0, offset2));
        }
      }
      if constexpr ((attributes & kT1) != 0) {
        calls.multiTexCoord(GL_TEXTURE1, elementAt(texCoords1, offset2));
      }
      if constexpr ((attributes & kT2) != 0) {
        calls.multiTexCoord(GL_TEXTURE2, elementAt(texCoords2, offset2));
      }
      calls.vertex(elementAt(vertices, offset3));
    }
    calls.end();
  }
}

using Emitter = void (*)(SORVANTA_EMITTER_PARAMETERS);
using EmitterTable = std::array<Emitter, 64>;

constexpr EmitterTable kDirectEmitters = {{
#define SORVANTA_EMITTER(index, parts) DrawImmediateMode##parts,
#include "engine/methods/ImmediateModeEmitters.def"
}};

constexpr EmitterTable kMacroEmitters = {{
#define SORVANTA_EMITTER(index, parts) DrawImmediateMode##parts##Macro,
#include "engine/methods/ImmediateModeEmitters.def"
}};

template <typename... Arguments>
bool dispatch(const EmitterTable& emitters, unsigned long variant, Arguments... arguments) {
  if (variant >= emitters.size()) {
    return false;
  }
  emitters[variant](arguments...);
  return true;
}

}  // namespace

#define SORVANTA_EMITTER_ARGUMENTS \
  detail, mode, vertices, colors, secondaryColors, normals, texCoords

#define SORVANTA_EMITTER(index, parts)                                \
  void DrawImmediateMode##parts(SORVANTA_EMITTER_PARAMETERS) {        \
    emitStrips<index, Direct>(SORVANTA_EMITTER_ARGUMENTS);            \
  }                                                                   \
  void DrawImmediateMode##parts##Macro(SORVANTA_EMITTER_PARAMETERS) { \
    emitStrips<index, Macro>(SORVANTA_EMITTER_ARGUMENTS);             \
  }
#include "engine/methods/ImmediateModeEmitters.def"

bool DoImmediateMode(unsigned long variant, SORVANTA_EMITTER_PARAMETERS) {
  return dispatch(kDirectEmitters, variant, SORVANTA_EMITTER_ARGUMENTS);
}

bool DoImmediateModeMacro(unsigned long variant, SORVANTA_EMITTER_PARAMETERS) {
  return dispatch(kMacroEmitters, variant, SORVANTA_EMITTER_ARGUMENTS);
}
