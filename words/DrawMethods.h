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

struct DrawMethodWord {
  DrawMethod method;
  const char* word;
  DrawUnit unit;
  bool inCoreProfile;  ///< whether a core profile lets a program submit this way
};

inline constexpr std::array<DrawMethodWord, 16> kDrawMethodWords = {{
    {kDrawImmediateMode, "immediateMode", DrawUnit::kVertex, false},
    {kDrawDisplayLists, "displayLists", DrawUnit::kModel, false},
    {kDrawArrays, "drawArrays", DrawUnit::kStrip, false},
    {kDrawCompiledVertArray, "compiledVertArray", DrawUnit::kStrip, false},
    {kDrawArraysWithVertArrayRng, "drawArraysWithVertArrayRng", DrawUnit::kStrip, false},
    {kDrawArraysWithVertArrayObjects, "drawArraysWithVertArrayObjects", DrawUnit::kRow, false},
    {kDrawArraysWithDynVertBufferObjectsVAO, "drawArraysWithDynVertBufferObjectsVAO",
     DrawUnit::kRow, true},
    {kDrawArraysWithStatVertBufferObjectsVAO, "drawArraysWithStatVertBufferObjectsVAO",
     DrawUnit::kRow, true},
    {kDrawArrayElement, "arrayElement", DrawUnit::kVertex, false},
    {kDrawArraysWithStaticVBO, "drawArraysWithStaticVBO", DrawUnit::kRow, true},
    {kMultiDrawArrays, "multiDrawArrays", DrawUnit::kModel, true},
    {kMultiDrawArraysIndirect, "multiDrawArraysIndirect", DrawUnit::kModel, true},
    {kDrawElementsWithRestart, "drawElementsWithRestart", DrawUnit::kModel, true},
    {kStreamSubData, "streamSubData", DrawUnit::kModel, true},
    {kStreamMapRange, "streamMapRange", DrawUnit::kModel, true},
    {kStreamPersistent, "streamPersistent", DrawUnit::kModel, true},
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
