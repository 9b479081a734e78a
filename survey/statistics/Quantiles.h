/// Order statistics.
#pragma once

#include <vector>

namespace survey {

/// The value below which that part (0 to 1) of the values lies, interpolated between the two
/// nearest; the values must not be empty.
double quantile(std::vector<double> values, double part);

/// The middle value, or the mean of the two middle ones; the values must not be empty.
double median(std::vector<double> values);

}  // namespace survey
