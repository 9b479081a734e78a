/// The middle of values of which some may be far astray, with a standard error.
///
/// The fifth of the values at either end is left out of the mean; the error comes from the values
/// with that fifth moved to its edge (Tukey and McLaughlin, 1963). Unlike ranks it grows sure with
/// few values, and unlike a plain mean no single value can carry it away from five on.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace survey {

struct TrimmedMean {
  double mean = 0;
  std::size_t kept = 0;       ///< values that count
  std::vector<double> pulls;  ///< how far each value pulls the mean, in the order given
  double freedom() const { return static_cast<double>(kept) - 1; }
  /// The square of the mean's standard error; infinite for one value.
  double variance() const;
};

/// `values` must not be empty.
TrimmedMean trimmedMean(std::span<const double> values);

/// Degrees of freedom of the variance of a mean over figures that are known unlike well: the
/// harmonic mean of theirs, each with the weight of what it adds to the variance: Satterthwaite's
/// (1946) for figures that move together, and less than it for independent ones.
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

/// The mean over several trimmed means whose values belong together, place by place, so that what
/// moves all of them at one place counts as one move. Each must have two values at least: one alone
/// does not tell how far it scatters, and its place would look steady.
class JointMean {
 public:
  /// `places` names where each value of the mean was taken.
  void add(const TrimmedMean& mean, std::span<const std::size_t> places);

  double mean() const;
  double freedom() const { return freedom_.value(); }
  double variance() const;

 private:
  double count_ = 0;
  double sum_ = 0;
  JointFreedom freedom_;
  std::vector<double> pulls_;  ///< by place, of the sum
};

}  // namespace survey
