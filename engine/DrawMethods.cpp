#include "engine/DrawMethods.h"

#include <algorithm>
#include <cstdlib>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"

namespace {

constexpr DrawMethodTraits::Step kNoStep = nullptr;

const char* nothing(const Driver& /*driver*/) {
  return nullptr;
}

const char* compiledVertexArrays(const Driver& driver) {
  return driver.compiledVertexArrays ? nullptr : "compiled vertex arrays";
}

const char* vertexArrayObjects(const Driver& driver) {
  return driver.vertexArrayObjects.available ? nullptr : "vertex array objects";
}

const char* vertexBufferObjects(const Driver& driver) {
  return driver.bufferObjects ? vertexArrayObjects(driver) : "vertex buffer objects";
}

const char* rowRanges(const Driver& driver) {
  const bool rowsNeedBuffers = !driver.vertexArrayObjects.acceptsClientMemory;
  return rowsNeedBuffers && driver.rangeProvider == RangeProvider::kNone
             ? "vertex array ranges"
             : vertexArrayObjects(driver);
}

void drawRowBuffers(SorvantaTest& test, int reps) {
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
     kNoStep, kNoStep, kNoStep, nothing},
    {kDrawDisplayLists, "displayLists",
     [](SorvantaTest& test, int reps) { test.drawDisplayList(reps); },
     [](SorvantaTest& test) { test.rebuildDisplayList(); }, kNoStep, kNoStep, nothing},
    {kDrawArrays, "drawArrays", [](SorvantaTest& test, int reps) { test.drawUsingArrays(reps); },
     kNoStep, kNoStep, kNoStep, nothing},
    {kDrawCompiledVertArray, "compiledVertArray",
     [](SorvantaTest& test, int reps) { test.drawUsingElements(reps); }, kNoStep,
     [](SorvantaTest& test) { glLockArraysEXT(0, static_cast<GLsizei>(test.modelVertexCount())); },
     [](SorvantaTest& /*test*/) { glUnlockArraysEXT(); }, compiledVertexArrays},
    {kDrawArraysWithVertArrayRng, "drawArraysWithVertArrayRng",
     [](SorvantaTest& test, int reps) { test.drawUsingArrays(reps); }, kNoStep,
     [](SorvantaTest& test) { test.declareVertexArrayRange(); },
     [](SorvantaTest& test) { test.withdrawVertexArrayRange(); }, nothing},
    {kDrawArraysWithVertArrayObjects, "drawArraysWithVertArrayObjects",
     [](SorvantaTest& test, int reps) { test.drawUsingVertexArrayObjects(reps); },
     [](SorvantaTest& test) { test.rebuildVertexArrayObjects(); },
     [](SorvantaTest& test) { test.enableRowRanges(); },
     [](SorvantaTest& test) { test.disableRowRanges(); }, rowRanges},
    {kDrawArraysWithDynVertBufferObjectsVAO, "drawArraysWithDynVertBufferObjectsVAO",
     drawRowBuffers, rebuildStreamRows, kNoStep, unbindRowBuffers, vertexBufferObjects},
    {kDrawArraysWithStatVertBufferObjectsVAO, "drawArraysWithStatVertBufferObjectsVAO",
     drawRowBuffers, rebuildStaticRows, kNoStep, unbindRowBuffers, vertexBufferObjects},
    {kDrawArrayElement, "arrayElement",
     [](SorvantaTest& test, int reps) { test.drawUsingArrayElements(reps); }, kNoStep, kNoStep,
     kNoStep, nothing},
    {kDrawArraysWithStaticVBO, "drawArraysWithStaticVBO", drawRowBuffers, rebuildStaticRows,
     kNoStep, unbindRowBuffers, vertexBufferObjects},
}};

const DrawMethodTraits& traitsOf(DrawMethod method) {
  const auto row = std::find_if(kDrawMethods.begin(), kDrawMethods.end(),
                                [=](const auto& m) { return m.method == method; });
  if (row == kDrawMethods.end()) {
    std::abort();
  }
  return *row;
}
