#include "survey/statistics/EffectiveSize.h"

#include <numeric>

namespace survey {

double effectiveSize(std::span<const double> shares) {
  const double sum = std::accumulate(shares.begin(), shares.end(), 0.0);
  return sum * sum / std::inner_product(shares.begin(), shares.end(), shares.begin(), 0.0);
}

}  // namespace survey
