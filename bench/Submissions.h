/// The drawing operations, each beside a bare loop of the same calls over the same records.
#pragma once

#include <span>

#include "engine/SorvantaTest.h"

struct Submission {
  const char* name;                     ///< the emitter, or the method with its options
  void (*prepare)(SorvantaTest& test);  ///< chooses the method and the attributes
  void (*ours)(SorvantaTest& test, int reps);
  void (*bare)(SorvantaTest& test, int reps);  ///< the same calls, written out by hand
};

std::span<const Submission> submissions();
