/// What commands read, and what they leave behind: text on standard output and files.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "survey/CommandLine.h"

namespace survey {

/// A file that cannot be read or is not ours; the text names it.
class CannotRead : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws CannotRead.
Result resultIn(const std::string& path);

bool wantsColours();

/// Whether it could be written, or need not be (an empty path); why not on standard error.
bool wrote(const std::string& path, const std::function<std::string()>& content);

/// Whether standard output took it; why not on standard error.
bool printed(const std::string& text);

/// Before time is spent: throws std::runtime_error for a build whose figures would be those of a
/// slow program, and where a file could not be written in the end.
void requireReady(const SittingCommand& command);

}  // namespace survey
