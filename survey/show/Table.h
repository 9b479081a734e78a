/// The figures as a table for eyes, on a terminal, in a pipe or in a merge request.
#pragma once

#include <string>

#include "survey/figures/Figures.h"
#include "survey/show/Grid.h"

namespace survey {

/// A section for each group, best first, and notes below. Leaders that cannot be told apart are
/// marked with '=', one that is alone with '>'.
Grid gridOf(const Record& record, const Figures& figures);

/// As text; with `colours` the leaders stand out.
std::string tableOf(const Record& record, const Figures& figures, bool colours);

/// In Markdown, with the answer, the driver and the machine on top.
std::string markdownOf(const Record& record, const Figures& figures);

}  // namespace survey
