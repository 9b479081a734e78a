/// What this program is and how it was built.
#pragma once

#include <string>

#include "survey/data/Record.h"

namespace survey {

Program thisProgram();

/// "sorvanta-survey 1.0.0 (3fe1a2b)".
std::string versionLine();

}  // namespace survey
