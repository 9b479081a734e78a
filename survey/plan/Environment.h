/// Sets of environment variables as a command line gives them.
#pragma once

#include <string>
#include <vector>

namespace survey {

/// The assignments in "VAR=value OTHER='two words' DRIVERS=$HOME/lib", split and expanded as a
/// shell does it, without running commands. Throws Unusable for what is no assignment, with
/// `option` as the culprit.
std::vector<std::string> assignmentsIn(const std::string& words, const std::string& option);

}  // namespace survey
