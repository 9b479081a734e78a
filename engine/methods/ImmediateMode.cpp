/// The generic immediate-mode emitter: any combination of attributes, tested for every vertex.
#include <utility>

#include "engine/SorvantaTest.h"
#include "engine/methods/ElementAt.h"
#include "engine/methods/Repetition.h"
#include "engine/methods/VertexAttributes.h"
#include "engine/methods/VertexCalls.h"
#include "platform/gl/DriverMemory.h"

namespace {

using ExportedCalls = DirectCalls<glSecondaryColor3fvEXT, glMultiTexCoord2fvARB>;

/// Keeps the compiler from hoisting the attribute tests out of the vertex loop, at no cost in
/// instructions: the tests are part of what this emitter measures.
void forgetValue(unsigned int& value) {
  asm volatile("" : "+r"(value));
}

void carryOn() {}

/// Not inlined, so that the vertex loop has the registers to itself.
template <void (*afterStrip)(), typename Calls>
[[gnu::noinline]] void emitModel(Calls calls, unsigned int attributes, GLenum mode,
                                 const MeshLayout& layout, const MeshArrays& arrays) {
  const MeshArrays a = arrays;
  const std::size_t stripBytes = layout.verticesPerStrip * sizeof(GLCoord3);
  std::size_t offset3 = 0;
  std::size_t offset2 = 0;
  for (std::uint32_t strip = 0; strip < layout.stripCount; ++strip) {
    glBegin(mode);  // the exported one on both paths, as glEnd
    for (const std::size_t end = offset3 + stripBytes; offset3 != end;
         offset3 += sizeof(GLCoord3), offset2 += sizeof(GLCoord2)) {
      forgetValue(attributes);
      if ((attributes & kNormalBit) != 0) {
        calls.normal(elementAt(a.normals, offset3));
      }
      if ((attributes & kColorBit) != 0) {
        calls.color(elementAt(a.colors, offset3));
      }
      if ((attributes & kSecondaryColorBit) != 0) {
        calls.secondaryColor(elementAt(a.secondaryColors, offset3));
      }
      const auto sendTexCoord = [&](std::size_t unit) {
        if ((attributes & texCoordBit(unit)) != 0) {
          calls.multiTexCoord(static_cast<GLenum>(GL_TEXTURE0_ARB + unit),
                              elementAt(a.texCoords[unit], offset2));
        }
      };
      [&]<std::size_t... units>(std::index_sequence<units...>) {
        (sendTexCoord(units), ...);
      }
      (std::make_index_sequence<kTextureUnitCount>());
      calls.vertex(elementAt(a.vertices, offset3));
    }
    glEnd();
    afterStrip();
  }
}

}  // namespace

void SorvantaTest::drawImmediateMode(unsigned int reps) {
  repeatModel(reps, thrash, [this] { drawImmediateModeRep(); });
}

void SorvantaTest::submitImmediateMode(int reps) {
  drawImmediateMode(static_cast<unsigned int>(reps));
}

[[gnu::always_inline]] inline unsigned int SorvantaTest::vertexAttributes() const {
  unsigned int attributes = (useNormals ? kNormalBit : 0) | (useColor ? kColorBit : 0) |
                            (useSecColor ? kSecondaryColorBit : 0);
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    attributes |= textureEnabled[unit] ? texCoordBit(unit) : 0;
  }
  return attributes;
}

void SorvantaTest::drawImmediateModeRep() {
  if (useMacros) {
    emitModel<carryOn>(TableCalls<const ContextTable&>(), vertexAttributes(), primitiveMode, layout,
                       arrays);
  } else {
    emitModel<carryOn>(ExportedCalls(), vertexAttributes(), primitiveMode, layout, arrays);
  }
}

void SorvantaTest::compileImmediateModeRep() {
  // Through the exported functions in any case: while a list is compiled the GL library has other
  // tables in force than the one that the macro path knows.
  emitModel<ListCompilation::check>(ExportedCalls(), vertexAttributes(), primitiveMode, layout,
                                    arrays);
}
