#include "survey/Program.h"

#include <fmt/format.h>

#include "Commit.h"

namespace survey {

Program thisProgram() {
#ifdef __OPTIMIZE__
  constexpr bool kOptimised = true;
#else
  constexpr bool kOptimised = false;
#endif
  return {SORVANTA_VERSION,  SORVANTA_COMMIT, SORVANTA_BUILD_TYPE,
          SORVANTA_COMPILER, SORVANTA_FLAGS,  kOptimised};
}

std::string versionLine() {
  const Program program = thisProgram();
  return program.commit.empty()
             ? fmt::format("sorvanta-survey {}", program.version)
             : fmt::format("sorvanta-survey {} ({})", program.version, program.commit);
}

}  // namespace survey
