/// A comparison in sentences.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "survey/figures/Changes.h"

namespace survey {

std::string_view inWords(Verdict verdict);

/// "new is 7.1 % ± 0.8 % slower; worst: drawArrays, detail 64, 12 %."
std::string verdictOf(const Comparison& comparison, const Changes& changes);

/// What has to be known beside the verdict, a sentence each: what could have been found, which
/// cells are missing or fail, how the sittings differ, how they ended.
std::vector<std::string> caveatsOf(const Comparison& comparison, const Changes& changes);

}  // namespace survey
