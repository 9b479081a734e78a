#include "engine/ImmediateModeFamily.h"

#include <array>
#include <cstddef>

#include "engine/ElementAt.h"
#include "engine/VertexAttributes.h"
#include "platform/gl/ContextTable.h"

namespace {

constexpr unsigned int kT0 = texCoordBit(0);
constexpr unsigned int kT1 = texCoordBit(1);
constexpr unsigned int kT2 = texCoordBit(2);

/// Calls the exported functions.
struct DirectCalls {
  void begin(GLenum mode) const { glBegin(mode); }
  void end() const { glEnd(); }
  void normal(const GLfloat* v) const { glNormal3fv(v); }
  void color(const GLfloat* v) const { glColor3fv(v); }
  void secondaryColor(const GLfloat* v) const { glSecondaryColor3fv(v); }
  void texCoord(const GLfloat* v) const { glTexCoord2fv(v); }
  void multiTexCoord(GLenum unit, const GLfloat* v) const { glMultiTexCoord2fv(unit, v); }
  void vertex(const GLfloat* v) const { glVertex3fv(v); }

  /// Unit 0 has the plain call, whatever other units are sent.
  static constexpr bool sendsUnit0Plainly(unsigned int /*attributes*/) { return true; }
};

/// Calls through the current context's table: the entries for vertices are copies, Begin and End
/// are looked up for every strip.
class ContextCalls {
 public:
  ContextCalls()
      : context_(CGLGetCurrentContext()),
        renderer_(context_->renderer),
        normal_(context_->table.Normal3fv),
        color_(context_->table.Color3fv),
        secondaryColor_(context_->table.SecondaryColor3fv),
        texCoord_(context_->table.TexCoord2fv),
        multiTexCoord_(context_->table.MultiTexCoord2fv),
        vertex_(context_->table.Vertex3fv) {}

  void begin(GLenum mode) const { context_->table.Begin(renderer_, mode); }
  void end() const { context_->table.End(renderer_); }
  void normal(const GLfloat* v) const { normal_(renderer_, v); }
  void color(const GLfloat* v) const { color_(renderer_, v); }
  void secondaryColor(const GLfloat* v) const { secondaryColor_(renderer_, v); }
  void texCoord(const GLfloat* v) const { texCoord_(renderer_, v); }
  void multiTexCoord(GLenum unit, const GLfloat* v) const { multiTexCoord_(renderer_, unit, v); }
  void vertex(const GLfloat* v) const { vertex_(renderer_, v); }

  /// Beside other units, unit 0 is sent as they are.
  static constexpr bool sendsUnit0Plainly(unsigned int attributes) {
    return (attributes & (kT1 | kT2)) == 0;
  }

 private:
  CGLContextObj context_;
  RendererHandle renderer_;
  ContextEntry<void(const GLfloat*)> normal_, color_, secondaryColor_, texCoord_;
  ContextEntry<void(GLenum, const GLfloat*)> multiTexCoord_;
  ContextEntry<void(const GLfloat*)> vertex_;
};

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
        if constexpr (Calls::sendsUnit0Plainly(attributes)) {
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
#include "engine/ImmediateModeEmitters.def"
}};

constexpr EmitterTable kMacroEmitters = {{
#define SORVANTA_EMITTER(index, parts) DrawImmediateMode##parts##Macro,
#include "engine/ImmediateModeEmitters.def"
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
    emitStrips<index, DirectCalls>(SORVANTA_EMITTER_ARGUMENTS);       \
  }                                                                   \
  void DrawImmediateMode##parts##Macro(SORVANTA_EMITTER_PARAMETERS) { \
    emitStrips<index, ContextCalls>(SORVANTA_EMITTER_ARGUMENTS);      \
  }
#include "engine/ImmediateModeEmitters.def"

bool DoImmediateMode(unsigned long variant, SORVANTA_EMITTER_PARAMETERS) {
  return dispatch(kDirectEmitters, variant, SORVANTA_EMITTER_ARGUMENTS);
}

bool DoImmediateModeMacro(unsigned long variant, SORVANTA_EMITTER_PARAMETERS) {
  return dispatch(kMacroEmitters, variant, SORVANTA_EMITTER_ARGUMENTS);
}
