/// Whether a context has the OpenGL that everything here draws with.
#pragma once

#include <string>

/// Tries out whether the current context, which must exist, has the fixed-function pipeline: calls
/// that a core profile or OpenGL ES ignores cost nothing, and would still give figures. Empty where
/// it has, else a sentence with the cause and the cure. No GL error is left pending.
std::string whyNoFixedFunction();
