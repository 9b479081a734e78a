/// A comparison as a table: a row a cell.
#pragma once

#include <string>

#include "survey/figures/Changes.h"
#include "survey/show/Grid.h"

namespace survey {

Grid gridOf(const Comparison& comparison, const Changes& changes);
std::string tableOf(const Comparison& comparison, const Changes& changes, bool colours);
/// With the verdict and the sides above it.
std::string markdownOf(const Comparison& comparison, const Changes& changes);

}  // namespace survey
