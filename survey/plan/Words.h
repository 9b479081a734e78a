/// Words from the command line that have to be one of a list.
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

}  // namespace survey
