/// What a program says beside its figures: whole sentences on standard error, each after the name
/// under which the program was started.
#pragma once

#include <string_view>

/// Says it, and goes on.
void warn(std::string_view sentence);

/// Says why the program cannot go on, and ends it with status 1.
[[noreturn]] void endWith(std::string_view sentence);
