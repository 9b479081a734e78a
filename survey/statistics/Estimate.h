/// Where the middle of a few independent values lies, and how surely.
#pragma once

#include <cstddef>
#include <span>

#include "survey/statistics/SharedVariance.h"

namespace survey {

struct Interval {
  double low;
  double middle;
  double high;

  double halfWidth() const { return (high - low) / 2; }
  bool contains(double value) const { return low <= value && value <= high; }
  bool meets(const Interval& other) const { return low <= other.high && other.low <= high; }
};

struct Estimate {
  double mean = 0;
  Variance variance{0, 0};  ///< of the mean
  std::size_t values = 1;   ///< that the mean is of
};

/// The trimmed mean of the values, which must not be empty.
Estimate estimateOf(std::span<const double> values);

/// Moves the variances of estimates that are known from few values towards what they have in
/// common. One of a single value knows nothing of its scatter, and stays so; none is known with
/// more degrees of freedom than all have together.
void shareVariances(std::span<Estimate> estimates);

/// Of independent ones, with Welch's degrees of freedom.
Estimate difference(const Estimate& newer, const Estimate& base);

/// The mean of independent ones, of which there is at least one, likewise.
Estimate meanOf(std::span<const Estimate> estimates);

/// Of what the interval holds the logarithm of.
Interval exponential(const Interval& logarithms);

/// Student's, which holds the middle with that confidence; infinite where nothing is known of the
/// scatter.
Interval intervalOf(const Estimate& estimate, double confidence = 0.95);

}  // namespace survey
