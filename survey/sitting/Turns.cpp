#include "survey/sitting/Turns.h"

#include <numeric>
#include <utility>

namespace survey {

std::vector<std::size_t> Turns::order(std::size_t count) {
  std::vector<std::size_t> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0);
  for (std::size_t left = count; left > 1; --left) {  // Fisher and Yates
    std::swap(numbers[left - 1], numbers[below(left)]);
  }
  return numbers;
}

std::uint64_t Turns::below(std::uint64_t bound) {
  // Draws from the incomplete last stretch would favour small numbers.
  const std::uint64_t unfair = (std::mt19937_64::max() % bound + 1) % bound;
  std::uint64_t drawn = generator();
  while (drawn > std::mt19937_64::max() - unfair) {
    drawn = generator();
  }
  return drawn % bound;
}

}  // namespace survey
