#include "bench/null/Submissions.h"

#include <array>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "engine/AttributeSetters.h"
#include "engine/methods/ImmediateModeFamily.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/Driver.h"

namespace {

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

/// The strips' places, in memory that costs nothing to have.
struct BareStrips {
  explicit BareStrips(const MeshLayout& layout) : count(static_cast<GLsizei>(layout.stripCount)) {
    for (std::size_t strip = 0; strip < layout.stripCount; ++strip) {
      firsts[strip] = static_cast<GLint>(strip * layout.verticesPerStrip);
      counts[strip] = static_cast<GLsizei>(layout.verticesPerStrip);
    }
  }
  GLsizei count;
  std::array<GLint, SorvantaTest::maxDetail()> firsts;
  std::array<GLsizei, SorvantaTest::maxDetail()> counts;
};

/// Calls write() before each model's call.
template <typename Write>
void bareMultiDraws(const SorvantaTest& test, int reps, Write write) {
  const BareStrips strips(test.getLayout());
  const GLenum mode = test.getPrimitive();
  for (int r = 0; r < reps; ++r) {
    write();
    glMultiDrawArrays(mode, strips.firsts.data(), strips.counts.data(), strips.count);
  }
}

void bareMultiDraw(SorvantaTest& test, int reps) {
  bareMultiDraws(test, reps, [] {});
}

void bareMultiDrawIndirect(SorvantaTest& test, int reps) {
  const GLenum mode = test.getPrimitive();
  const auto count = static_cast<GLsizei>(test.getLayout().stripCount);
  for (int r = 0; r < reps; ++r) {
    glMultiDrawArraysIndirect(mode, nullptr, count, 0);
  }
}

void bareElementsWithRestart(SorvantaTest& test, int reps) {
  const GLenum mode = test.getPrimitive();
  const MeshLayout& layout = test.getLayout();
  const auto count = static_cast<GLsizei>(layout.vertexCount + layout.stripCount - 1);
  for (int r = 0; r < reps; ++r) {
    glDrawElements(mode, count, GL_UNSIGNED_INT, nullptr);
  }
}

void bareSubDataStream(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  const std::size_t size = test.getLayout().vertexCount * sizeof(GLCoord3);
  std::vector<std::byte> written(size);
  bareMultiDraws(test, reps, [&] {
    std::memcpy(written.data(), a.vertices, size);
    glBufferSubDataARB(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(size), written.data());
  });
}

template <typename Write>
void bareMapRanges(const SorvantaTest& test, int reps, std::size_t size, Write write) {
  bareMultiDraws(test, reps, [=] {
    write(glMapBufferRange(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(size),
                           GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT));
    glUnmapBufferARB(GL_ARRAY_BUFFER);
  });
}

void bareMapRangeStream(SorvantaTest& test, int reps) {
  const std::size_t size = test.getLayout().vertexCount * sizeof(GLCoord3);
  bareMapRanges(test, reps, size,
                [&](void* memory) { std::memcpy(memory, test.getArrays().vertices, size); });
}

void bareTexturedColoredMapRangeStream(SorvantaTest& test, int reps) {
  struct Vertex {
    GLCoord3 position, color;
    GLCoord2 texCoords[2];
  };
  const MeshArrays& a = test.getArrays();
  const std::uint32_t count = test.getLayout().vertexCount;
  bareMapRanges(test, reps, count * sizeof(Vertex), [=](void* memory) {
    auto* const vertices = static_cast<Vertex*>(memory);
    for (std::uint32_t v = 0; v < count; ++v) {
      vertices[v] = {a.vertices[v], a.colors[v], {a.texCoords[0][v], a.texCoords[1][v]}};
    }
  });
}

void barePersistentStream(SorvantaTest& test, int reps) {
  const MeshArrays& a = test.getArrays();
  const std::size_t size = test.getLayout().vertexCount * sizeof(GLCoord3);
  auto* const memory = static_cast<std::byte*>(
      glMapBufferRange(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(3 * size), GL_MAP_WRITE_BIT));
  const BareStrips strips(test.getLayout());
  const GLenum mode = test.getPrimitive();
  std::array<GLsync, 3> fences = {};
  std::size_t place = 0;
  for (int r = 0; r < reps; ++r) {
    if (fences[place] != nullptr) {
      glClientWaitSync(fences[place], GL_SYNC_FLUSH_COMMANDS_BIT, 1000000000);
      glDeleteSync(fences[place]);
    }
    std::memcpy(memory + place * size, a.vertices, size);
    glMultiDrawArrays(mode, strips.firsts.data(), strips.counts.data(), strips.count);
    fences[place] = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    place = (place + 1) % 3;
  }
}

constexpr const char* kEverything = "-n -c -s -t0 -t1 -t2 -t3 -t4 -t5 -t6 -t7";

constexpr Submission kSubmissions[] = {
    {"DrawImmediateMode", kDrawArrays, "", bareVertices, emitter<0, false>},
    {"DrawImmediateModeCol", kDrawArrays, "", bareColors, emitter<2, false>},
    {"DrawImmediateModeNorColSecT0T1T2", kDrawArrays, "", bareFamilyFull, emitter<63, false>},
    {"DrawImmediateModeMacro", kDrawArrays, "", bareVertices, emitter<0, true>},
    {"DrawImmediateModeColMacro", kDrawArrays, "", bareColors, emitter<2, true>},
    {"DrawImmediateModeNorColSecT0T1T2Macro", kDrawArrays, "", bareFamilyFull, emitter<63, true>},
    {"drawArrays", kDrawArrays, "", bareArrays},
    {"drawArrays-m", kDrawArrays, "-m", bareArrays},
    {"compiledVertArray", kDrawCompiledVertArray, "", bareElements},
    {"arrayElement", kDrawArrayElement, "", bareArrayElements},
    {"arrayElement-m", kDrawArrayElement, "-m", bareArrayElements},
    {"displayLists", kDrawDisplayLists, "", bareList},
    {"displayLists-m", kDrawDisplayLists, "-m", bareList},
    {"drawArraysWithVertArrayObjects", kDrawArraysWithVertArrayObjects, "", bareRowObjects},
    {"drawArraysWithStatVertBufferObjectsVAO", kDrawArraysWithStatVertBufferObjectsVAO, "",
     bareBufferObjects},
    {"drawArraysWithStaticVBO", kDrawArraysWithStaticVBO, "", barePlainBuffers},
    {"drawArraysWithStaticVBO-c-t0-t1", kDrawArraysWithStaticVBO, "-c -t0 -t1",
     bareTexturedColoredBuffers},
    {"multiDrawArrays", kMultiDrawArrays, "", bareMultiDraw},
    {"multiDrawArraysIndirect", kMultiDrawArraysIndirect, "", bareMultiDrawIndirect},
    {"drawElementsWithRestart", kDrawElementsWithRestart, "", bareElementsWithRestart},
    {"streamSubData", kStreamSubData, "", bareSubDataStream},
    {"streamMapRange", kStreamMapRange, "", bareMapRangeStream},
    {"streamMapRange-c-t0-t1", kStreamMapRange, "-c -t0 -t1", bareTexturedColoredMapRangeStream},
    {"streamPersistent", kStreamPersistent, "", barePersistentStream},
    {"immediateMode", kDrawImmediateMode, "", bareVertices},
    {"immediateMode-c", kDrawImmediateMode, "-c", bareColors},
    {"immediateMode-n-c-t0", kDrawImmediateMode, "-n -c -t0", bareThree},
    {"immediateMode-n-c-s-t0..7", kDrawImmediateMode, kEverything, bareEverything},
};

}  // namespace

void prepare(const Submission& submission, SorvantaTest& test) {
  test.initGL();
  test.setDrawMethod(submission.method);
  std::istringstream words(submission.with);
  for (std::string word; words >> word;) {
    setAttribute(test, attributeNamed(word).value(), true);
  }
}

void submit(const Submission& submission, bool ours, SorvantaTest& test, int reps) {
  if (!ours) {
    submission.bare(test, reps);
  } else if (submission.emitter != nullptr) {
    submission.emitter(test, reps);
  } else {
    (test.*traitsOf(submission.method).submit)(reps);
  }
}

std::span<const Submission> submissions() {
  return kSubmissions;
}
