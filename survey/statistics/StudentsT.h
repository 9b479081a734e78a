/// Student's distribution.
#pragma once

namespace survey {

/// What chance alone exceeds, in either direction, with that probability; infinite without a degree
/// of freedom.
double criticalValue(double probability, double freedom);

/// How probable so large a value is by chance alone, in either direction; 1 without a degree of
/// freedom.
double twoSidedProbability(double value, double freedom);

}  // namespace survey
