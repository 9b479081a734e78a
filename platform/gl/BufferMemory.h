/// What happens when the driver has no memory for a buffer.
#pragma once

#include <cstddef>

/// Ends the program with a sentence and status 1: figures of draws from nothing would be no
/// figures.
[[noreturn]] void endWithoutBuffer(std::size_t bytes);
