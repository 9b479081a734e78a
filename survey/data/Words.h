/// Words of a command line: those that have to be one of a list, and environment variables.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace survey {

/// A command line that cannot be used; the text names the culprit.
class Unusable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The candidate that takes the fewest edits to become the word; the first of several. There must
/// be one.
std::string_view nearestWord(std::string_view word,
                             const std::vector<std::string_view>& candidates);

/// Throws Unusable: "'drawArray' is no method; did you mean 'drawArrays'?"
[[noreturn]] void throwUnknownWord(std::string_view word, std::string_view what,
                                   const std::vector<std::string_view>& candidates);

/// The parts between commas.
std::vector<std::string> split(std::string_view list);

/// The assignments in "VAR=value OTHER='two words' DRIVERS=$HOME/lib", split and expanded as a
/// shell does it, without running commands. Throws Unusable for what is no assignment, with
/// `option` as the culprit.
std::vector<std::string> assignmentsIn(const std::string& words, const std::string& option);

}  // namespace survey
