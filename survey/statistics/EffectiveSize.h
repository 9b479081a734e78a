/// How many values a mean is worth that they have unlike shares in.
#pragma once

#include <span>

namespace survey {

/// As many as equal shares would say as much: Kish's effective sample size (1965). The shares must
/// not be all 0.
double effectiveSize(std::span<const double> shares);

}  // namespace survey
