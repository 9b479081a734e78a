/// The methods that draw from the frame's client arrays.
#include "engine/SorvantaTest.h"
#include "engine/methods/Repetition.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/Driver.h"

void SorvantaTest::lockArrays() {
  glLockArraysEXT(0, static_cast<GLsizei>(modelVertexCount()));
}

void SorvantaTest::unlockArrays() {
  glUnlockArraysEXT();
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
        // Unrolled by two, which the even length of strips in every layout allows: this path shows
        // the least that submission can cost. The direct path is what an application would write.
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
