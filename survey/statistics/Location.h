/// Where the middle of a few independent values lies, how surely, and whether it is zero.
///
/// From six values on by Wilcoxon's signed-rank distribution: the estimate and the interval of
/// Hodges and Lehmann (1963), which one stray value cannot carry away. Fewer values cannot give
/// 95 % that way; there Student's t is used, whose intervals a stray value makes wide. Both take
/// the values as drawn symmetrically around the middle; neither needs them to be normal from six
/// on.
#pragma once

#include <span>

namespace survey {

struct Interval {
  double low;
  double middle;
  double high;

  double halfWidth() const { return (high - low) / 2; }
  bool contains(double value) const { return low <= value && value <= high; }
};

/// The interval that holds the middle with at least that confidence. One value alone says nothing
/// about scatter: its interval is infinite. `values` must not be empty.
Interval locate(std::span<const double> values, double confidence = 0.95);

/// How probable values at least this far from zero are where the middle is zero, in either
/// direction; 1 for fewer than two values. At most 1 - confidence exactly where the interval of
/// that confidence leaves zero out.
double probabilityOfNoEffect(std::span<const double> values);

}  // namespace survey
