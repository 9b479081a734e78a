/// What is typical of some values, which must not be empty.
#pragma once

#include <span>
#include <vector>

namespace survey {

double mean(std::span<const double> values);

/// The value below which that part (0 to 1) of the values lies, interpolated between the two
/// nearest.
double quantile(std::vector<double> values, double part);

/// The middle value, or the mean of the two middle ones.
double median(std::vector<double> values);

}  // namespace survey
