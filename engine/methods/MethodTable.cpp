#include "engine/methods/MethodTable.h"

#include <algorithm>
#include <cstdlib>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"

namespace {

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

const char* rangeStandIn(const Driver& driver) {
  switch (driver.rangeProvider) {
    case RangeProvider::kPinned:
      return "a buffer object over the same memory (GL_AMD_pinned_memory)";
    case RangeProvider::kFilled:
      return "a buffer object filled at the flush";
    case RangeProvider::kNative:
    case RangeProvider::kNone:
      break;
  }
  return nullptr;
}

const char* objectsStandIn(const Driver& driver) {
  return driver.vertexArrayObjects.acceptsClientMemory ? nullptr : "GL_ARB_vertex_array_object";
}

const char* rowRangesStandIn(const Driver& driver) {
  const char* const range = rangeStandIn(driver);
  return range != nullptr ? range : objectsStandIn(driver);
}

const char* missingMultiDraw(const Driver& driver) {
  return driver.multiDraw ? missingVertexBufferObjects(driver) : "glMultiDrawArrays";
}

const char* missingMultiDrawIndirect(const Driver& driver) {
  return driver.multiDrawIndirect ? missingVertexBufferObjects(driver)
                                  : "glMultiDrawArraysIndirect";
}

const char* missingPrimitiveRestart(const Driver& driver) {
  return driver.primitiveRestart.enable != nullptr ? missingVertexBufferObjects(driver)
                                                   : "primitive restart";
}

const char* missingMapBufferRange(const Driver& driver) {
  return driver.mapBufferRange ? missingMultiDraw(driver) : "glMapBufferRange";
}

const char* missingPersistentMapping(const Driver& driver) {
  return !driver.bufferStorage ? "persistently mapped buffers"
         : !driver.fences      ? "fences"
                               : missingMapBufferRange(driver);
}

using Test = SorvantaTest;

/// The row of a method that has a class of its own.
constexpr DrawMethodTraits retaining(DrawMethod method, RetainedModelMaker* make,
                                     const char* (*missing)(const Driver&),
                                     unsigned int modelsInBuffer = 1) {
  return {.method = method,
          .submit = &Test::drawRetainedModel,
          .rebuild = &Test::rebuildRetainedModel,
          .bind = &Test::bindRetainedModel,
          .release = &Test::releaseRetainedModel,
          .missing = missing,
          .makeRetained = make,
          .modelsInBuffer = modelsInBuffer,
          .sendsArrays = true};
}

}  // namespace

constexpr std::array<DrawMethodTraits, kDrawMethodWords.size()> kDrawMethods = {{
    {.method = kDrawImmediateMode, .submit = &Test::submitImmediateMode, .hasMacroPath = true},
    {.method = kDrawDisplayLists,
     .submit = &Test::drawDisplayList,
     .rebuild = &Test::rebuildDisplayList,
     .hasMacroPath = true},
    {.method = kDrawArrays,
     .submit = &Test::drawUsingArrays,
     .sendsArrays = true,
     .hasMacroPath = true},
    {.method = kDrawCompiledVertArray,
     .submit = &Test::drawUsingElements,
     .bind = &Test::lockArrays,
     .release = &Test::unlockArrays,
     .missing = missingCompiledVertexArrays,
     .sendsArrays = true},
    {.method = kDrawArraysWithVertArrayRng,
     .submit = &Test::drawUsingArrays,
     .bind = &Test::declareVertexArrayRange,
     .release = &Test::withdrawVertexArrayRange,
     .standIn = rangeStandIn,
     .rangeVertices = &Test::modelVertexCount,
     .drawnWithoutRange = "plain client arrays",
     .sendsArrays = true,
     .hasMacroPath = true},
    {.method = kDrawArraysWithVertArrayObjects,
     .submit = &Test::drawUsingVertexArrayObjects,
     .rebuild = &Test::rebuildVertexArrayObjects,
     .bind = &Test::enableRowRanges,
     .release = &Test::disableRowRanges,
     .missing = missingRowRanges,
     .standIn = rowRangesStandIn,
     .rangeVertices = &Test::modelTriangleCountPerStrip,
     .drawnWithoutRange = "the rows' own copies in client memory",
     .sendsArrays = true},
    {.method = kDrawArraysWithDynVertBufferObjectsVAO,
     .submit = &Test::drawUsingVertexBufferObjects,
     .rebuild = &Test::rebuildStreamBuffers,
     .release = &Test::unbindRowBuffers,
     .missing = missingVertexBufferObjects,
     .standIn = objectsStandIn,
     .sendsArrays = true},
    {.method = kDrawArraysWithStatVertBufferObjectsVAO,
     .submit = &Test::drawUsingVertexBufferObjects,
     .rebuild = &Test::rebuildStaticBuffers,
     .release = &Test::unbindRowBuffers,
     .missing = missingVertexBufferObjects,
     .standIn = objectsStandIn,
     .sendsArrays = true},
    {.method = kDrawArrayElement,
     .submit = &Test::drawUsingArrayElements,
     .sendsArrays = true,
     .hasMacroPath = true},
    {.method = kDrawArraysWithStaticVBO,
     .submit = &Test::drawUsingVertexBufferObjects,
     .rebuild = &Test::rebuildStaticBuffers,
     .release = &Test::unbindRowBuffers,
     .missing = missingVertexBufferObjects,
     .standIn = objectsStandIn,
     .sendsArrays = true},
    retaining(kMultiDrawArrays, makeMultiDraw, missingMultiDraw),
    retaining(kMultiDrawArraysIndirect, makeMultiDrawIndirect, missingMultiDrawIndirect),
    retaining(kDrawElementsWithRestart, makeElementsWithRestart, missingPrimitiveRestart),
    retaining(kStreamSubData, makeSubDataStream, missingMultiDraw),
    retaining(kStreamMapRange, makeMapRangeStream, missingMapBufferRange),
    retaining(kStreamPersistent, makePersistentStream, missingPersistentMapping, kRingSize),
}};

static_assert(std::equal(kDrawMethods.begin(), kDrawMethods.end(), kDrawMethodWords.begin(),
                         [](const DrawMethodTraits& traits, const DrawMethodWord& row) {
                           return traits.method == row.method;
                         }));

const DrawMethodTraits& traitsOf(DrawMethod method) {
  const DrawMethodTraits* const row = rowWith(kDrawMethods, &DrawMethodTraits::method, method);
  if (row == nullptr) {
    std::abort();
  }
  return *row;
}
