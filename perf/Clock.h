/// The program's one clock.
#pragma once

#include <cstdint>

/// Wall-clock time in microseconds since 1970-01-01 00:00 UTC.
std::uint64_t getTime();
