/// Text that others wrote: drivers, files, the environment, whoever names things.
#pragma once

#include <string>
#include <string_view>

enum class LineEnds { kBlanks, kKept };

/// Fit for a terminal and for lines of a file: UTF-8, where everything else is the replacement
/// character, with blanks for control characters.
std::string harmless(std::string_view text, LineEnds lineEnds = LineEnds::kBlanks);
