/// How the engine draws by each method.
#pragma once

#include <array>

#include "engine/methods/RetainedModel.h"
#include "words/DrawMethods.h"

struct Driver;
class SorvantaTest;

/// What a method does where another does something else. A null step is none.
struct DrawMethodTraits {
  using Step = void (SorvantaTest::*)();

  DrawMethod method;
  void (SorvantaTest::*submit)(int reps);  ///< draws the model `reps` times; this is measured
  Step rebuild = nullptr;                  ///< builds the structure that the method retains
  Step bind = nullptr;                     ///< follows a frame's client-array binding
  Step release = nullptr;                  ///< ends a frame's client-array release
  /// What the method needs and the driver lacks, null where nothing; a null function: it needs
  /// nothing that a driver could lack.
  const char* (*missing)(const Driver&) = nullptr;
  /// What stands in where the driver lacks the extension that the method was made for, null where
  /// it has it; a null function: the method was made for no extension.
  const char* (*standIn)(const Driver&) = nullptr;
  /// How many vertices a vertex array range must cover for it; null where it needs none.
  unsigned int (SorvantaTest::*rangeVertices)() const = nullptr;
  const char* drawnWithoutRange = nullptr;     ///< from what it draws where no range covers so many
  RetainedModelMaker* makeRetained = nullptr;  ///< of a method that has a class of its own
  /// How many whole models lie in one of its buffer objects, whose size has a limit.
  unsigned int modelsInBuffer = 0;
  bool sendsArrays = false;   ///< binds arrays, and so sends no colours beside normals
  bool hasMacroPath = false;  ///< calls through the context's table where that is asked for
};

/// One row per method, in the order of kDrawMethodWords.
extern const std::array<DrawMethodTraits, kDrawMethodWords.size()> kDrawMethods;

/// The row of a method; ends the program for a value that is none.
const DrawMethodTraits& traitsOf(DrawMethod method);
