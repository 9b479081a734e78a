/// What the sides of a comparison were measured on.
#pragma once

#include <string>
#include <vector>

#include "survey/record/Comparison.h"

namespace survey {

/// A sentence for either side, and one if they are the same driver.
std::vector<std::string> sidesOf(const Comparison& comparison);

/// How two sittings differ in what they were taken on, apart from the driver, a sentence each.
std::vector<std::string> differencesOf(const Comparison& comparison);

}  // namespace survey
