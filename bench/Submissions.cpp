#include "bench/Submissions.h"

#include <array>

#include "engine/ImmediateModeFamily.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/Driver.h"

namespace {

void useNothing(SorvantaTest& test) {
  test.setDrawMethod(kDrawArrays);
}
void useColors(SorvantaTest& test) {
  test.setVertexColors(true);
}
void useEverything(SorvantaTest& test) {
  test.setNormals(true);
  test.setVertexColors(true);
  test.setSecColor(true);
  for (unsigned int unit = 0; unit < kTextureUnitCount; ++unit) {
    test.setTexturing(unit, true);
  }
}
void useNormalsColorsAndCoordinates(SorvantaTest& test) {
  test.setNormals(true);
  test.setVertexColors(true);
  test.setTexturing(0, true);
}
void useMacros(SorvantaTest& test) {
  test.setMacros(true);
}
void useLists(SorvantaTest& test) {
  test.setDrawMethod(kDrawDisplayLists);
}
void useListsAndMacros(SorvantaTest& test) {
  useLists(test);
  useMacros(test);
}
void useRowObjects(SorvantaTest& test) {
  test.setDrawMethod(kDrawArraysWithVertArrayObjects);
}
void useBufferObjects(SorvantaTest& test) {
  test.setDrawMethod(kDrawArraysWithStatVertBufferObjectsVAO);
}
void useBuffers(SorvantaTest& test) {
  test.setDrawMethod(kDrawArraysWithStaticVBO);
}
void useTexturedColoredBuffers(SorvantaTest& test) {
  test.setVertexColors(true);
  test.setTexturing(0, true);
  test.setTexturing(1, true);
  useBuffers(test);
}

/// One model, strip by strip; `emit` makes a vertex's calls and steps to the next vertex. Not
/// inlined, so that the registers are all the vertex loop's.
template <typename Emit>
[[gnu::noinline]] void bareStrips(GLenum mode, std::uint32_t strips, std::uint32_t vertices,
                                  Emit emit) {
  for (std::uint32_t strip = 0; strip < strips; ++strip) {
    glBegin(mode);
    for (std::uint32_t v = 0; v < vertices; ++v) {
      emit();
    }
    glEnd();
  }
}

template <typename Emit>
void bareModels(const SorvantaTest& test, int reps, Emit emit) {
  const MeshLayout layout = test.getLayout();
  for (int r = 0; r < reps; ++r) {
    bareStrips(test.getPrimitive(), layout.stripCount, layout.verticesPerStrip, emit);
  }
}

template <unsigned long variant, bool macro>
void emitter(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  std::array<GLCoord2*, 3> texCoords = {a.texCoords[0], a.texCoords[1], a.texCoords[2]};
  for (int r = 0; r < reps; ++r) {
    (macro ? DoImmediateModeMacro : DoImmediateMode)(variant, test.getDetail(), test.getPrimitive(),
                                                     a.vertices, a.colors, a.secondaryColors,
                                                     a.normals, texCoords.data());
  }
}

void bareVertices(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  bareModels(test, reps, [v = a.vertices]() mutable { glVertex3fv(&v++->x); });
}

void bareColors(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  bareModels(test, reps, [v = a.vertices, c = a.colors]() mutable {
    glColor3fv(&c++->x);
    glVertex3fv(&v++->x);
  });
}

void bareThree(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  bareModels(test, reps,
             [v = a.vertices, n = a.normals, c = a.colors, t0 = a.texCoords[0]]() mutable {
               glNormal3fv(&n++->x);
               glColor3fv(&c++->x);
               glMultiTexCoord2fvARB(GL_TEXTURE0, &t0++->s);
               glVertex3fv(&v++->x);
             });
}

void bareEverything(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  bareModels(
      test, reps,
      [v = a.vertices, n = a.normals, c = a.colors, s = a.secondaryColors, t0 = a.texCoords[0],
       t1 = a.texCoords[1], t2 = a.texCoords[2], t3 = a.texCoords[3], t4 = a.texCoords[4],
       t5 = a.texCoords[5], t6 = a.texCoords[6], t7 = a.texCoords[7]]() mutable {
        glNormal3fv(&n++->x);
        glColor3fv(&c++->x);
        glSecondaryColor3fvEXT(&s++->x);
        glMultiTexCoord2fvARB(GL_TEXTURE0, &t0++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE1, &t1++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE2, &t2++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE3, &t3++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE4, &t4++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE5, &t5++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE6, &t6++->s);
        glMultiTexCoord2fvARB(GL_TEXTURE7, &t7++->s);
        glVertex3fv(&v++->x);
      });
}

void bareFamilyFull(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  bareModels(test, reps,
             [v = a.vertices, n = a.normals, c = a.colors, s = a.secondaryColors,
              t0 = a.texCoords[0], t1 = a.texCoords[1], t2 = a.texCoords[2]]() mutable {
               glNormal3fv(&n++->x);
               glColor3fv(&c++->x);
               glSecondaryColor3fv(&s++->x);
               glTexCoord2fv(&t0++->s);
               glMultiTexCoord2fv(GL_TEXTURE1, &t1++->s);
               glMultiTexCoord2fv(GL_TEXTURE2, &t2++->s);
               glVertex3fv(&v++->x);
             });
}

void bareArrays(SorvantaTest& test, int reps) {
  const MeshLayout layout = test.getLayout();
  const GLenum mode = test.getPrimitive();
  const auto n = static_cast<GLsizei>(layout.verticesPerStrip);
  for (int r = 0; r < reps; ++r) {
    for (GLint first = 0; first < static_cast<GLint>(layout.vertexCount); first += n) {
      glDrawArrays(mode, first, n);
    }
  }
}

void bareElements(SorvantaTest& test, int reps) {
  const MeshLayout layout = test.getLayout();
  const GLenum mode = test.getPrimitive();
  const GLuint* const indices = test.getIndices().data();
  const std::size_t n = layout.verticesPerStrip;
  for (int r = 0; r < reps; ++r) {
    for (const GLuint* first = indices; first < indices + layout.vertexCount; first += n) {
      glDrawElements(mode, static_cast<GLsizei>(n), GL_UNSIGNED_INT, first);
    }
  }
}

void bareArrayElements(SorvantaTest& test, int reps) {
  const MeshLayout layout = test.getLayout();
  const GLenum mode = test.getPrimitive();
  for (int r = 0; r < reps; ++r) {
    GLint i = 0;
    for (std::uint32_t s = 0; s < layout.stripCount; ++s) {
      glBegin(mode);
      for (std::uint32_t v = 0; v < layout.verticesPerStrip; ++v) {
        glArrayElement(i++);
      }
      glEnd();
    }
  }
}

/// The list's name matters to nobody here.
void bareList(SorvantaTest& /*test*/, int reps) {
  for (int r = 0; r < reps; ++r) {
    glCallList(1);
  }
}

template <typename Record>
void bareObjects(const SorvantaTest& test, int reps, std::span<const Record> records) {
  const GLenum mode = test.getPrimitive();
  const auto n = static_cast<GLsizei>(test.getLayout().verticesPerRow);
  for (int r = 0; r < reps; ++r) {
    for (const Record& record : records) {
      glBindVertexArray(record.vertexArrayObject);
      glDrawArrays(mode, 0, n);
    }
  }
}

void bareRowObjects(SorvantaTest& test, int reps) {
  bareObjects(test, reps, test.getVertexArrayObjects());
}
void bareBufferObjects(SorvantaTest& test, int reps) {
  bareObjects(test, reps, test.getVertexBufferObjects());
}

/// Calls point(record, stride) between each row's bind and draw.
template <typename Point>
void bareBuffers(SorvantaTest& test, int reps, Point point) {
  const GLenum mode = test.getPrimitive();
  const auto n = static_cast<GLsizei>(test.getLayout().verticesPerRow);
  const std::span<const VertexBufferRecord> records = test.getVertexBufferObjects();
  for (int r = 0; r < reps; ++r) {
    for (const VertexBufferRecord& record : records) {
      glBindBufferARB(GL_ARRAY_BUFFER, record.buffer);
      point(record, static_cast<GLsizei>(record.stride));
      glDrawArrays(mode, 0, n);
    }
  }
}

void barePlainBuffers(SorvantaTest& test, int reps) {
  bareBuffers(test, reps, [](const VertexBufferRecord& record, GLsizei stride) {
    glVertexPointer(3, GL_FLOAT, stride, rowPointer(0, record.offsets.vertexOffset));
  });
}

void bareTexturedColoredBuffers(SorvantaTest& test, int reps) {
  bareBuffers(test, reps, [](const VertexBufferRecord& record, GLsizei stride) {
    glVertexPointer(3, GL_FLOAT, stride, rowPointer(0, record.offsets.vertexOffset));
    glColorPointer(3, GL_FLOAT, stride, rowPointer(0, record.offsets.colorOffset));
    for (const unsigned int unit : {0U, 1U}) {
      glActiveTextureARB(GL_TEXTURE0 + unit);
      glClientActiveTextureARB(GL_TEXTURE0 + unit);
      glTexCoordPointer(2, GL_FLOAT, stride, rowPointer(0, record.offsets.texCoordOffsets[unit]));
    }
  });
}

void immediate(SorvantaTest& test, int reps) {
  test.drawImmediateMode(static_cast<unsigned int>(reps));
}
void arrays(SorvantaTest& test, int reps) {
  test.drawUsingArrays(reps);
}
void elements(SorvantaTest& test, int reps) {
  test.drawUsingElements(reps);
}
void arrayElements(SorvantaTest& test, int reps) {
  test.drawUsingArrayElements(reps);
}
void list(SorvantaTest& test, int reps) {
  test.drawDisplayList(reps);
}
void rowObjects(SorvantaTest& test, int reps) {
  test.drawUsingVertexArrayObjects(reps);
}
void buffers(SorvantaTest& test, int reps) {
  test.drawUsingVertexBufferObjects(reps);
}

constexpr Submission kSubmissions[] = {
    {"DrawImmediateMode", useNothing, emitter<0, false>, bareVertices},
    {"DrawImmediateModeCol", useNothing, emitter<2, false>, bareColors},
    {"DrawImmediateModeNorColSecT0T1T2", useNothing, emitter<63, false>, bareFamilyFull},
    {"DrawImmediateModeMacro", useNothing, emitter<0, true>, bareVertices},
    {"DrawImmediateModeColMacro", useNothing, emitter<2, true>, bareColors},
    {"DrawImmediateModeNorColSecT0T1T2Macro", useNothing, emitter<63, true>, bareFamilyFull},
    {"drawArrays", useNothing, arrays, bareArrays},
    {"drawArrays-m", useMacros, arrays, bareArrays},
    {"compiledVertArray", useNothing, elements, bareElements},
    {"arrayElement", useNothing, arrayElements, bareArrayElements},
    {"arrayElement-m", useMacros, arrayElements, bareArrayElements},
    {"displayLists", useLists, list, bareList},
    {"displayLists-m", useListsAndMacros, list, bareList},
    {"drawArraysWithVertArrayObjects", useRowObjects, rowObjects, bareRowObjects},
    {"drawArraysWithStatVertBufferObjectsVAO", useBufferObjects, buffers, bareBufferObjects},
    {"drawArraysWithStaticVBO", useBuffers, buffers, barePlainBuffers},
    {"drawArraysWithStaticVBO-c-t0-t1", useTexturedColoredBuffers, buffers,
     bareTexturedColoredBuffers},
    {"immediateMode", useNothing, immediate, bareVertices},
    {"immediateMode-c", useColors, immediate, bareColors},
    {"immediateMode-n-c-t0", useNormalsColorsAndCoordinates, immediate, bareThree},
    {"immediateMode-n-c-s-t0..7", useEverything, immediate, bareEverything},
};

}  // namespace

std::span<const Submission> submissions() {
  return kSubmissions;
}
