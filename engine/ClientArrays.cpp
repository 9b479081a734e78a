/// The client arrays of a frame, and the methods that draw from them.
#include "engine/Repetition.h"
#include "engine/SorvantaTest.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/Driver.h"

namespace {

void activateUnit(unsigned int unit) {
  glActiveTextureARB(GL_TEXTURE0_ARB + unit);
  glClientActiveTextureARB(GL_TEXTURE0_ARB + unit);
}

}  // namespace

void SorvantaTest::bindTextureUnits() {
  for (unsigned int i = 0; i < kTextureUnitCount; ++i) {
    glColor4f(1, 1, 1, 1);
    if (!textureEnabled[i]) {
      continue;
    }
    activateUnit(i);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindTexture(GL_TEXTURE_2D, textures[i]);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, i == 0 ? GL_MODULATE : GL_DECAL);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glEnable(GL_TEXTURE_2D);
    glTexCoordPointer(2, GL_FLOAT, 0, arrays.texCoords[i]);
  }
  activateUnit(0);
}

void SorvantaTest::releaseTextureUnits() {
  for (unsigned int i = 0; i < kTextureUnitCount; ++i) {
    if (textureEnabled[i]) {
      activateUnit(i);
      glDisableClientState(GL_TEXTURE_COORD_ARRAY);
      glDisable(GL_TEXTURE_2D);
    }
  }
  activateUnit(0);
}

void SorvantaTest::bindNormals() {
  glEnableClientState(GL_NORMAL_ARRAY);
  glNormalPointer(GL_FLOAT, 0, arrays.normals);
}

void SorvantaTest::bindColors() {
  if (useColor) {
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(3, GL_FLOAT, 0, arrays.colors);
  }
  if (useSecColor) {
    glEnable(GL_COLOR_SUM_EXT);
    glEnableClientState(GL_SECONDARY_COLOR_ARRAY_EXT);
    glSecondaryColorPointer(3, GL_FLOAT, 0, arrays.secondaryColors);
  }
}

void SorvantaTest::bindVertices() {
  glEnableClientState(GL_VERTEX_ARRAY);
  glVertexPointer(3, GL_FLOAT, 0, arrays.vertices);
}

void SorvantaTest::releaseAttributeArrays() {
  if (useNormals) {
    glDisableClientState(GL_NORMAL_ARRAY);
  }
  if (useColor) {
    glDisableClientState(GL_COLOR_ARRAY);
  }
  if (useSecColor) {
    glDisable(GL_COLOR_SUM_EXT);
    glDisableClientState(GL_SECONDARY_COLOR_ARRAY_EXT);
  }
}

void SorvantaTest::declareVertexArrayRange() {
  if (modelVertexCount() > maxVertexArraySize()) {
    return;
  }
  VertexArrayRange& range = *driver().vertexArrayRange;
  const auto size = static_cast<GLsizei>(vertexDataSize);
  range.declare(0, size, vertexData.get());
  range.enable();
  range.flush(size, vertexData.get());
}

void SorvantaTest::withdrawVertexArrayRange() {
  VertexArrayRange& range = *driver().vertexArrayRange;
  range.disable();
  range.withdraw(0);
}

void SorvantaTest::drawUsingArrays(int reps) {
  if (!glInitialized) {
    return;
  }
  const auto draw = [this, reps](auto drawArrays) {
    const GLenum mode = primitiveMode;
    const auto n = static_cast<GLsizei>(layout.verticesPerStrip);
    const auto end = static_cast<GLint>(layout.vertexCount);
    repeatModel(reps, thrash, [=] {
      for (GLint first = 0; first < end; first += n) {
        drawArrays(mode, first, n);
      }
    });
  };
  if (useMacros) {
    const CGLContextObj context = CGLGetCurrentContext();
    draw([entry = context->table.DrawArrays, renderer = context->renderer](
             GLenum mode, GLint first, GLsizei count) { entry(renderer, mode, first, count); });
  } else {
    draw([](GLenum mode, GLint first, GLsizei count) { glDrawArrays(mode, first, count); });
  }
}

void SorvantaTest::drawUsingElements(int reps) {
  if (!glInitialized) {
    return;
  }
  const GLenum mode = primitiveMode;
  const std::uint32_t n = layout.verticesPerStrip;
  const GLuint* const end = indices.get() + layout.vertexCount;
  repeatModel(reps, thrash, [=, this] {
    for (const GLuint* first = indices.get(); first < end; first += n) {
      glDrawElements(mode, static_cast<GLsizei>(n), GL_UNSIGNED_INT, first);
    }
  });
}

void SorvantaTest::drawUsingArrayElements(int reps) {
  if (!glInitialized) {
    return;
  }
  const GLenum mode = primitiveMode;
  const auto n = static_cast<GLint>(layout.verticesPerStrip);
  const auto end = static_cast<GLint>(layout.vertexCount);
  if (useMacros) {
    const CGLContextObj context = CGLGetCurrentContext();
    const RendererHandle renderer = context->renderer;
    repeatModel(reps, thrash, [=, arrayElement = context->table.ArrayElement] {
      for (GLint first = 0; first < end; first += n) {
        context->table.Begin(renderer, mode);
        // Unrolled by two: strips have even lengths in every layout.
        for (GLint i = first; i < first + n; i += 2) {
          arrayElement(renderer, i);
          arrayElement(renderer, i + 1);
        }
        context->table.End(renderer);
      }
    });
  } else {
    repeatModel(reps, thrash, [=] {
      for (GLint first = 0; first < end; first += n) {
        glBegin(mode);
        for (GLint i = first; i < first + n; ++i) {
          glArrayElement(i);
        }
        glEnd();
      }
    });
  }
}
