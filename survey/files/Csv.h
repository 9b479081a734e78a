/// A survey as a table for programs: a row a cell.
#pragma once

#include <string>

#include "survey/figures/Figures.h"

namespace survey {

/// Comma-separated, as RFC 4180 has it, with a row of headings. Cells without a figure have empty
/// fields, and the reason in the last.
std::string csvOf(const Record& record, const Figures& figures);

}  // namespace survey
