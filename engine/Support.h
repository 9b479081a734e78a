/// Whether what a setting asks for can run on the current driver, and as what.
#pragma once

#include <string>

#include "words/DrawMethods.h"
#include "words/RunsAs.h"

class SorvantaTest;

struct Support {
  RunsAs as = RunsAs::kItself;
  /// What is missing, and what runs in its place; for a stand-in its name; empty for kItself.
  std::string sentence;
};

/// Of a draw method, for the test object's mesh as it is. Needs initGL to have run.
Support supportOf(const SorvantaTest& test, DrawMethod method);

/// Of colours beside normals, as the test object is set: array methods send none then.
Support supportOfColors(const SorvantaTest& test);

/// Of calls through the context's own table. Needs the context current.
Support supportOfMacros();
