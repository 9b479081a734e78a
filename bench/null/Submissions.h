/// The drawing operations, each beside a bare loop of the same calls over the same records.
#pragma once

#include <span>

#include "engine/SorvantaTest.h"

struct Submission {
  const char* name;  ///< the emitter, or the method with its options
  DrawMethod method;
  const char* with;                                    ///< words of attributes
  void (*bare)(SorvantaTest& test, int reps);          ///< the same calls, written out by hand
  void (*emitter)(SorvantaTest& test, int reps) = {};  ///< in place of the method's own operation
};

std::span<const Submission> submissions();

/// Sets a new test object up for it.
void prepare(const Submission& submission, SorvantaTest& test);

/// Draws the model `reps` times, by our operation or by the bare loop.
void submit(const Submission& submission, bool ours, SorvantaTest& test, int reps);
