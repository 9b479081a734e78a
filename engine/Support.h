/// Whether what a setting asks for can run on the current driver, and as what.
#pragma once

#include <string>

#include "words/DrawMethods.h"

class SorvantaTest;

struct Support {
  enum class As {
    kItself,
    kStandIn,        ///< by what asks the same of the driver where it lacks an extension
    kSomethingElse,  ///< it would run, but a figure of it would be that of something else
    kNothing,        ///< it cannot run
  };
  As as = As::kItself;
  /// What is missing, and what runs in its place; for a stand-in its name; empty for kItself.
  std::string sentence;

  /// Whether a figure of it is one of what was asked for.
  bool hasFigure() const { return as == As::kItself || as == As::kStandIn; }
};

/// Of a draw method, for the test object's mesh as it is. Needs initGL to have run.
Support supportOf(const SorvantaTest& test, DrawMethod method);

/// Of colours beside normals, as the test object is set: array methods send none then.
Support supportOfColors(const SorvantaTest& test);

/// Of calls through the context's own table. Needs the context current.
Support supportOfMacros();
