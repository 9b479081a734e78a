#include "survey/statistics/Holm.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace survey {

std::vector<bool> positives(std::span<const double> probabilities, double level) {
  std::vector<std::size_t> order(probabilities.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return probabilities[a] < probabilities[b]; });
  std::vector<bool> positive(probabilities.size(), false);
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (probabilities[order[i]] > level / static_cast<double>(order.size() - i)) {
      break;
    }
    positive[order[i]] = true;
  }
  return positive;
}

}  // namespace survey
