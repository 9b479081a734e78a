/// The generic immediate-mode emitter: any combination of attributes, tested for every vertex.
#include <utility>

#include "engine/ElementAt.h"
#include "engine/Repetition.h"
#include "engine/SorvantaTest.h"
#include "engine/VertexAttributes.h"
#include "platform/gl/ContextTable.h"

namespace {

/// Per-vertex calls through the exported functions.
struct DirectCalls {
  void normal(const GLfloat* v) const { glNormal3fv(v); }
  void color(const GLfloat* v) const { glColor3fv(v); }
  void secondaryColor(const GLfloat* v) const { glSecondaryColor3fvEXT(v); }
  void texCoord(GLenum unit, const GLfloat* v) const { glMultiTexCoord2fvARB(unit, v); }
  void vertex(const GLfloat* v) const { glVertex3fv(v); }
};

/// Per-vertex calls through the context's table, each entry read at the moment of the call.
struct ContextCalls {
  CGLContextObj context;

  void normal(const GLfloat* v) const { context->table.Normal3fv(context->renderer, v); }
  void color(const GLfloat* v) const { context->table.Color3fv(context->renderer, v); }
  void secondaryColor(const GLfloat* v) const {
    context->table.SecondaryColor3fv(context->renderer, v);
  }
  void texCoord(GLenum unit, const GLfloat* v) const {
    context->table.MultiTexCoord2fv(context->renderer, unit, v);
  }
  void vertex(const GLfloat* v) const { context->table.Vertex3fv(context->renderer, v); }
};

/// Keeps the compiler from hoisting the attribute tests out of the vertex loop, at no cost in
/// instructions: the tests are part of what this emitter measures.
void forgetValue(unsigned int& value) {
  asm volatile("" : "+r"(value));
}

}  // namespace

void SorvantaTest::drawImmediateMode(unsigned int reps) {
  repeatModel(static_cast<int>(reps), thrash, [this] { drawImmediateModeRep(); });
}

void SorvantaTest::drawImmediateModeRep() {
  if (useMacros) {
    emitModel(ContextCalls{CGLGetCurrentContext()});
  } else {
    emitModel(DirectCalls{});
  }
}

template <typename Calls>
void SorvantaTest::emitModel(Calls calls) const {
  unsigned int attributes = (useNormals ? kNormalBit : 0) | (useColor ? kColorBit : 0) |
                            (useSecColor ? kSecondaryColorBit : 0);
  for (std::size_t unit = 0; unit < kTextureUnitCount; ++unit) {
    attributes |= textureEnabled[unit] ? texCoordBit(unit) : 0;
  }

  const MeshArrays a = arrays;
  const GLenum mode = primitiveMode;
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
          calls.texCoord(static_cast<GLenum>(GL_TEXTURE0_ARB + unit),
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
  }
}
