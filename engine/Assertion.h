/// Preconditions that are checked in every build.
#pragma once

/// Names the place and the expression on standard error and aborts.
[[noreturn]] void failAssertion(const char* file, unsigned int line, const char* expression);

#define SORVANTA_ASSERT(expression) \
  ((expression) ? static_cast<void>(0) : failAssertion(__FILE__, __LINE__, #expression))
