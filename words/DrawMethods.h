/// The ways of submitting the mesh: their words on the command line, and what they are to a
/// program that would submit geometry the same way.
#pragma once

#include <array>
#include <string_view>

#include "words/Rows.h"

/// The values are fixed; none is 8 or 11 to 15.
enum DrawMethod {
  kDrawImmediateMode = 0,
  kDrawDisplayLists = 1,
  kDrawArrays = 2,
  kDrawCompiledVertArray = 3,
  kDrawArraysWithVertArrayRng = 4,
  kDrawArraysWithVertArrayObjects = 5,
  kDrawArraysWithDynVertBufferObjectsVAO = 6,
  kDrawArraysWithStatVertBufferObjectsVAO = 7,
  kDrawArrayElement = 9,
  kDrawArraysWithStaticVBO = 10,
  kMultiDrawArrays = 16,
  kMultiDrawArraysIndirect = 17,
  kDrawElementsWithRestart = 18,
  kStreamSubData = 19,
  kStreamMapRange = 20,
  kStreamPersistent = 21,
};

/// How much of the model one call draws.
enum class DrawUnit { kVertex, kStrip, kRow, kModel };

/// What becomes of the vertices between two models.
enum class VertexUse {
  kKept,      ///< by the driver, in buffers or lists
  kFromHere,  ///< the program's own, read anew for each model
  kStreamed,  ///< written anew into buffers for each model
};

struct DrawMethodWord {
  DrawMethod method;
  const char* word;
  DrawUnit unit;
  VertexUse use;
  bool inCoreProfile;  ///< whether a core profile lets a program submit this way
  const char* calls;   ///< what a program calls that submits this way
};

inline constexpr std::array<DrawMethodWord, 16> kDrawMethodWords = {{
    {kDrawImmediateMode, "immediateMode", DrawUnit::kVertex, VertexUse::kFromHere, false,
     "glBegin; for each vertex glNormal3fv, glVertex3fv; glEnd"},
    {kDrawDisplayLists, "displayLists", DrawUnit::kModel, VertexUse::kKept, false,
     "once glNewList, the strips, glEndList; then glCallList"},
    {kDrawArrays, "drawArrays", DrawUnit::kStrip, VertexUse::kFromHere, false,
     "glVertexPointer to memory; for each strip glDrawArrays"},
    {kDrawCompiledVertArray, "compiledVertArray", DrawUnit::kStrip, VertexUse::kFromHere, false,
     "glVertexPointer to memory; glLockArraysEXT; for each strip glDrawElements"},
    {kDrawArraysWithVertArrayRng, "drawArraysWithVertArrayRng", DrawUnit::kStrip,
     VertexUse::kFromHere, false,
     "glVertexArrayRangeAPPLE over memory; glVertexPointer; for each strip glDrawArrays"},
    {kDrawArraysWithVertArrayObjects, "drawArraysWithVertArrayObjects", DrawUnit::kRow,
     VertexUse::kFromHere, false,
     "once glGenVertexArrays, glVertexPointer to memory; then glBindVertexArray, glDrawArrays"},
    {kDrawArraysWithDynVertBufferObjectsVAO, "drawArraysWithDynVertBufferObjectsVAO",
     DrawUnit::kRow, VertexUse::kKept, true,
     "once glBufferData with GL_STREAM_DRAW, glGenVertexArrays; then glBindVertexArray, "
     "glDrawArrays"},
    {kDrawArraysWithStatVertBufferObjectsVAO, "drawArraysWithStatVertBufferObjectsVAO",
     DrawUnit::kRow, VertexUse::kKept, true,
     "once glBufferData with GL_STATIC_DRAW, glGenVertexArrays; then glBindVertexArray, "
     "glDrawArrays"},
    {kDrawArrayElement, "arrayElement", DrawUnit::kVertex, VertexUse::kFromHere, false,
     "glVertexPointer to memory; glBegin; for each vertex glArrayElement; glEnd"},
    {kDrawArraysWithStaticVBO, "drawArraysWithStaticVBO", DrawUnit::kRow, VertexUse::kKept, true,
     "once glBufferData with GL_STATIC_DRAW; then glBindBuffer, glVertexPointer, glDrawArrays"},
    {kMultiDrawArrays, "multiDrawArrays", DrawUnit::kModel, VertexUse::kKept, true,
     "once glBufferData with GL_STATIC_DRAW, glGenVertexArrays; then glMultiDrawArrays"},
    {kMultiDrawArraysIndirect, "multiDrawArraysIndirect", DrawUnit::kModel, VertexUse::kKept, true,
     "once glBufferData, also of the draws, glGenVertexArrays; then glMultiDrawArraysIndirect"},
    {kDrawElementsWithRestart, "drawElementsWithRestart", DrawUnit::kModel, VertexUse::kKept, true,
     "once glBufferData, also of indices, glGenVertexArrays; then glPrimitiveRestartIndex, "
     "glDrawElements"},
    {kStreamSubData, "streamSubData", DrawUnit::kModel, VertexUse::kStreamed, true,
     "glBufferSubData with all vertices; then glMultiDrawArrays"},
    {kStreamMapRange, "streamMapRange", DrawUnit::kModel, VertexUse::kStreamed, true,
     "glMapBufferRange with GL_MAP_INVALIDATE_BUFFER_BIT, write, glUnmapBuffer; then "
     "glMultiDrawArrays"},
    {kStreamPersistent, "streamPersistent", DrawUnit::kModel, VertexUse::kStreamed, true,
     "once glBufferStorage and glMapBufferRange for good; then write, glMultiDrawArrays, "
     "glFenceSync"},
}};

/// Whether it is one of the ten that have always been there.
constexpr bool amongTheTen(DrawMethod method) {
  return method < kMultiDrawArrays;
}

/// The row of a method; null for a value that is none.
constexpr const DrawMethodWord* rowOf(DrawMethod method) {
  return rowWith(kDrawMethodWords, &DrawMethodWord::method, method);
}

/// The row of the method with that word; null where there is none.
constexpr const DrawMethodWord* drawMethodNamed(std::string_view word) {
  return rowWith(kDrawMethodWords, &DrawMethodWord::word, word);
}
