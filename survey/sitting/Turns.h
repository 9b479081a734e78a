/// Who is visited when, and in which order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace survey {

/// Random orders that depend on nothing but the seed: the same on every machine and library.
class Turns {
 public:
  explicit Turns(std::uint64_t seed) : generator(seed) {}

  /// The numbers below `count` in an order of which all are equally probable.
  std::vector<std::size_t> order(std::size_t count);

  /// A whole number below `bound`, all equally probable; `bound` at least 1.
  std::uint64_t below(std::uint64_t bound);

 private:
  std::mt19937_64 generator;
};

}  // namespace survey
