/// A page of files.
#pragma once

#include "survey/CommandLine.h"

namespace survey {

/// Writes it; the exit status. Throws Unusable for a file that cannot be read.
int report(const ReportCommand& command);

}  // namespace survey
