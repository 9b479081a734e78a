/// Numbers as people read them.
#pragma once

#include <string>

#include "survey/statistics/Estimate.h"

namespace survey {

/// Three digits that count: 183, 35.4, 7.02, 0.123; 1830 for 1834.
std::string threeDigits(double value);

/// Half of an interval's width beside its middle: "1.2 %", "12 %", "> 99 %"; "?" where it is not
/// known.
std::string spreadOf(const Interval& interval);

/// "MTri/s" or "MQuad/s" for a primitive's word.
std::string unitOf(const std::string& primitive);

/// Attributes in words: "vertices alone" or "with -n -l0".
std::string attributesInWords(const std::string& sent);

}  // namespace survey
