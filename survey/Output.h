/// What a command leaves behind: text on standard output and files.
#pragma once

#include <functional>
#include <string>

#include "survey/CommandLine.h"

namespace survey {

bool wantsColours();

/// Whether it could be written, or need not be (an empty path); why not on standard error.
bool wrote(const std::string& path, const std::function<std::string()>& content);

/// Whether standard output took it; why not on standard error.
bool printed(const std::string& text);

/// What shells take for the end by that signal.
int statusOfSignal(int signal);

/// Before time is spent: throws std::runtime_error for a build whose figures would be those of a
/// slow program, and where a file could not be written in the end.
void requireReady(const SittingCommand& command);

}  // namespace survey
