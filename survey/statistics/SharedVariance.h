/// Variances of many cells, each known from few values, that lend each other certainty.
#pragma once

#include <span>

namespace survey {

/// A variance and the degrees of freedom that it is known with.
struct Variance {
  double value;
  double freedom;
};

/// What variances like these are drawn around, and what one such variance is worth in degrees of
/// freedom: none for unlike or for few variances, infinite for ones that differ by chance alone.
/// The moments of the logarithms, as Smyth (2004, section 6.2) has them.
Variance commonVariance(std::span<const Variance> variances);

/// A variance between its own value and the common one, each with the weight of its freedom
/// (Smyth's moderated variance).
Variance moderated(const Variance& own, const Variance& common);

}  // namespace survey
