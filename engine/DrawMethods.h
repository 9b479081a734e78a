/// The ten ways of submitting the mesh. Their values are fixed; none has the value 8.
#pragma once

#include <array>

struct Driver;
class SorvantaTest;

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
};

/// Everything that distinguishes one method from another. A null step is none.
struct DrawMethodTraits {
  using Step = void (*)(SorvantaTest&);

  DrawMethod method;
  const char* word;                         ///< on the command line
  void (*submit)(SorvantaTest&, int reps);  ///< draws the model `reps` times; this is measured
  Step rebuild;                             ///< builds the structure that the method retains
  Step bind;                                ///< follows a frame's client-array binding
  Step release;                             ///< ends a frame's client-array release
  const char* (*missing)(const Driver&);    ///< what the driver lacks for it; null: nothing
};

extern const std::array<DrawMethodTraits, 10> kDrawMethods;

/// The row of a method; ends the program for a value that is none.
const DrawMethodTraits& traitsOf(DrawMethod method);
