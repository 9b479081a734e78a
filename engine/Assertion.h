/// Preconditions that are checked in every build.
#pragma once

#include <source_location>

/// Unless `holds`, names the place and `expression` on standard error and aborts.
void require(bool holds, const char* expression,
             std::source_location place = std::source_location::current());
