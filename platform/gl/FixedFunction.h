/// Whether a context has the OpenGL that everything here draws with.
#pragma once

#include <string>

/// Tries out whether the current context, which must exist, carries out the fixed function: calls
/// that a core profile or OpenGL ES does not carry out cost nothing, and would give figures. Empty
/// where it does, else a sentence with the cause and the cure. No GL error is left pending.
std::string whyNoFixedFunction();
