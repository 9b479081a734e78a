/// What commands read, and what they leave behind: text on standard output and files.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

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

/// The same of what says nothing new: a file that is there stays as it is, and counts as not
/// written.
bool keptOrWrote(const std::string& path, const std::function<std::string()>& content);

/// Whether standard output, or standard error where that has a file of its own, took it; why not on
/// standard error.
bool printed(const std::string& text, bool onStandardError);

/// Before time is spent: throws Unusable for files that were surely not meant, which are those that
/// are read, the same one twice, and a result where none is to be written, and std::runtime_error
/// for those that could not be written in the end.
void requirePlacesFor(const Outputs& outputs, const std::vector<std::string>& inputs);

/// The same, and throws std::runtime_error for a build whose figures would be those of a slow
/// program.
void requireReady(const SittingCommand& command);

}  // namespace survey
