/// Degrees of freedom of the variance of a mean over figures that are known unlike well.
#pragma once

#include <cstddef>

namespace survey {

/// The harmonic mean of theirs, each with the weight of what it adds to the variance:
/// Satterthwaite's (1946) for figures that move together, and less than it for independent ones.
class JointFreedom {
 public:
  /// A figure that is the mean of so many values of a like scatter.
  void add(std::size_t values, double freedom) {
    const double variance = 1 / static_cast<double>(values);
    variances_ += variance;
    parts_ += variance / freedom;
  }
  double value() const { return variances_ / parts_; }

 private:
  double variances_ = 0;
  double parts_ = 0;
};

}  // namespace survey
