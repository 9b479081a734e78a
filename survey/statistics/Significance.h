/// What chance alone may bring, for one test and for many at once.
#pragma once

#include <span>
#include <vector>

namespace survey {

/// What Student's distribution exceeds with that probability; infinite without a degree of freedom.
double criticalValue(double probability, double freedom);

/// How probable it is that Student's distribution exceeds that value; 1 without a degree of
/// freedom.
double probabilityAbove(double value, double freedom);

/// Which of the tests may be called positive so that the chance of even one false alarm among all
/// of them is at most `level`: the step-down procedure of Holm (1979). In the order of the
/// probabilities given, those of no effect.
std::vector<bool> positives(std::span<const double> probabilities, double level);

}  // namespace survey
