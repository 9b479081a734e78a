#include "engine/Assertion.h"

#include <cstdio>
#include <cstdlib>

void failAssertion(const char* file, unsigned int line, const char* expression) {
  std::fprintf(stderr, "%s:%u: failed assertion `%s'\n", file, line, expression);
  std::abort();
}
