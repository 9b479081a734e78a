#include "engine/DrawMethods.h"

#include <algorithm>
#include <cstdlib>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"

namespace {

constexpr DrawMethodTraits::Step kNoStep = nullptr;

const char* missingNothing(const Driver& /*driver*/) {
  return nullptr;
}

const char* missingCompiledVertexArrays(const Driver& driver) {
  return driver.compiledVertexArrays ? nullptr : "compiled vertex arrays";
}

const char* missingVertexArrayObjects(const Driver& driver) {
  return driver.vertexArrayObjects.available ? nullptr : "vertex array objects";
}

const char* missingVertexBufferObjects(const Driver& driver) {
  return driver.bufferObjects ? missingVertexArrayObjects(driver) : "vertex buffer objects";
}

const char* missingRowRanges(const Driver& driver) {
  const bool rowsNeedBuffers = !driver.vertexArrayObjects.acceptsClientMemory;
  return rowsNeedBuffers && driver.rangeProvider == RangeProvider::kNone
             ? "vertex array ranges"
             : missingVertexArrayObjects(driver);
}

void submitRowBuffers(SorvantaTest& test, int reps) {
  test.drawUsingVertexBufferObjects(reps);
}
void rebuildStaticRows(SorvantaTest& test) {
  test.rebuildVertexBufferObjects(GL_STATIC_DRAW_ARB);
}
void rebuildStreamRows(SorvantaTest& test) {
  test.rebuildVertexBufferObjects(GL_STREAM_DRAW_ARB);
}
void unbindRowBuffers(SorvantaTest& test) {
  test.unbindRowBuffers();
}

}  // namespace

const std::array<DrawMethodTraits, 10> kDrawMethods = {{
    {kDrawImmediateMode, "immediateMode",
     [](SorvantaTest& test, int reps) { test.drawImmediateMode(static_cast<unsigned int>(reps)); },
     kNoStep, kNoStep, kNoStep, missingNothing},
    {kDrawDisplayLists, "displayLists",
     [](SorvantaTest& test, int reps) { test.drawDisplayList(reps); },
     [](SorvantaTest& test) { test.rebuildDisplayList(); }, kNoStep, kNoStep, missingNothing},
    {kDrawArrays, "drawArrays", [](SorvantaTest& test, int reps) { test.drawUsingArrays(reps); },
     kNoStep, kNoStep, kNoStep, missingNothing},
    {kDrawCompiledVertArray, "compiledVertArray",
     [](SorvantaTest& test, int reps) { test.drawUsingElements(reps); }, kNoStep,
     [](SorvantaTest& test) { glLockArraysEXT(0, static_cast<GLsizei>(test.modelVertexCount())); },
     [](SorvantaTest& /*test*/) { glUnlockArraysEXT(); }, missingCompiledVertexArrays},
    {kDrawArraysWithVertArrayRng, "drawArraysWithVertArrayRng",
     [](SorvantaTest& test, int reps) { test.drawUsingArrays(reps); }, kNoStep,
     [](SorvantaTest& test) { test.declareVertexArrayRange(); },
     [](SorvantaTest& test) { test.withdrawVertexArrayRange(); }, missingNothing},
    {kDrawArraysWithVertArrayObjects, "drawArraysWithVertArrayObjects",
     [](SorvantaTest& test, int reps) { test.drawUsingVertexArrayObjects(reps); },
     [](SorvantaTest& test) { test.rebuildVertexArrayObjects(); },
     [](SorvantaTest& test) { test.enableRowRanges(); },
     [](SorvantaTest& test) { test.disableRowRanges(); }, missingRowRanges},
    {kDrawArraysWithDynVertBufferObjectsVAO, "drawArraysWithDynVertBufferObjectsVAO",
     submitRowBuffers, rebuildStreamRows, kNoStep, unbindRowBuffers, missingVertexBufferObjects},
    {kDrawArraysWithStatVertBufferObjectsVAO, "drawArraysWithStatVertBufferObjectsVAO",
     submitRowBuffers, rebuildStaticRows, kNoStep, unbindRowBuffers, missingVertexBufferObjects},
    {kDrawArrayElement, "arrayElement",
     [](SorvantaTest& test, int reps) { test.drawUsingArrayElements(reps); }, kNoStep, kNoStep,
     kNoStep, missingNothing},
    {kDrawArraysWithStaticVBO, "drawArraysWithStaticVBO", submitRowBuffers, rebuildStaticRows,
     kNoStep, unbindRowBuffers, missingVertexBufferObjects},
}};

const DrawMethodTraits& traitsOf(DrawMethod method) {
  const auto row = std::find_if(kDrawMethods.begin(), kDrawMethods.end(),
                                [=](const auto& m) { return m.method == method; });
  if (row == kDrawMethods.end()) {
    std::abort();
  }
  return *row;
}
