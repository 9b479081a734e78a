#include "engine/Assertion.h"

#include <cstdio>
#include <cstdlib>

void require(bool holds, const char* expression, std::source_location place) {
  if (!holds) {
    std::fprintf(stderr, "%s:%u: failed assertion `%s'\n", place.file_name(),
                 static_cast<unsigned int>(place.line()), expression);
    std::abort();
  }
}
