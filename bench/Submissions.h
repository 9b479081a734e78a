/// The drawing operations, each beside a bare loop of the same calls over the same records.
#pragma once

#include <span>

#include "engine/SorvantaTest.h"

/// Brings the test object into the state that the operation is compared in, draws the model
/// `reps` times our way, or makes the same calls in the shortest loop that we can write by hand.
struct Submission {
  const char* name;
  void (*prepare)(SorvantaTest& test);
  void (*ours)(SorvantaTest& test, int reps);
  void (*bare)(SorvantaTest& test, int reps);
};

std::span<const Submission> submissions();
