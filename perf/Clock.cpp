#include "perf/Clock.h"

#include <sys/time.h>

std::uint64_t getTime() {
  timeval now{};
  gettimeofday(&now, nullptr);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(now.tv_usec);
}
