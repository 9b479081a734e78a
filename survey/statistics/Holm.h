/// Many tests at once.
#pragma once

#include <span>
#include <vector>

namespace survey {

/// Which of the tests may be called positive so that the chance of even one false alarm among all
/// of them is at most `level`: the step-down procedure of Holm (1979). In the order of the
/// probabilities given, those of no effect.
std::vector<bool> positives(std::span<const double> probabilities, double level);

}  // namespace survey
