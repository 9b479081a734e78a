/// Files that a command is given.
#pragma once

#include <string>

#include "survey/files/ResultJson.h"

namespace survey {

/// Throws Unusable, with the file's name, for one that cannot be read or is not ours.
Result resultIn(const std::string& path);

}  // namespace survey
