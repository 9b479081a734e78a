/// A comparison in sentences and as a table.
#pragma once

#include <string>
#include <vector>

#include "survey/figures/Changes.h"
#include "survey/show/Grid.h"

namespace survey {

/// "new is 7.1 % ± 0.8 % slower; worst: drawArrays, detail 64, 12 %."
std::string verdictOf(const Comparison& comparison, const Changes& changes);

/// What either side was measured on, and whether that is the same.
std::vector<std::string> sidesOf(const Comparison& comparison);

/// What has to be known beside the verdict, a sentence each: what could have been found, which
/// cells are missing or fail, how the sittings differ, how they ended.
std::vector<std::string> caveatsOf(const Comparison& comparison, const Changes& changes);

Grid gridOf(const Comparison& comparison, const Changes& changes);
std::string tableOf(const Comparison& comparison, const Changes& changes, bool colours);
std::string markdownOf(const Comparison& comparison, const Changes& changes);

}  // namespace survey
