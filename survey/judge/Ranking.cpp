#include "survey/judge/Ranking.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "survey/statistics/Significance.h"

namespace survey {
namespace {

/// Block by block, where both were measured.
std::vector<double> differences(const std::vector<BlockValue>& blocks,
                                const std::vector<BlockValue>& others) {
  std::vector<double> values;
  auto other = others.begin();
  for (const BlockValue& block : blocks) {
    other = std::find_if(other, others.end(),
                         [&](const BlockValue& same) { return same.block >= block.block; });
    if (other != others.end() && other->block == block.block) {
      values.push_back(block.value - other->value);
    }
  }
  return values;
}

/// The ratios of every member of a group to every other: logarithms, by their places in it.
using Pairs = std::vector<std::vector<Estimate>>;

std::vector<Pairs> pairsOf(const std::vector<CellsBlocks>& groups) {
  std::vector<Estimate> flat;
  for (const CellsBlocks& group : groups) {
    for (auto one = group.begin(); one != group.end(); ++one) {
      for (auto other = one + 1; other != group.end(); ++other) {
        flat.push_back(ratioOf(*one, *other));
      }
    }
  }
  const std::vector<Estimate> own = flat;
  shareVariances(flat);
  for (std::size_t i = 0; i < flat.size(); ++i) {
    // One that scatters more than others do so for a reason, and pairs that share it do so
    // together.
    flat[i].variance.value = std::max(flat[i].variance.value, own[i].variance.value);
  }
  std::vector<Pairs> all;
  auto estimate = flat.begin();
  for (const CellsBlocks& group : groups) {
    const std::size_t count = group.size();
    Pairs& pairs = all.emplace_back(count, std::vector<Estimate>(count));
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t j = i + 1; j < count; ++j) {
        pairs[i][j] = *estimate++;
        pairs[j][i] = pairs[i][j];
        pairs[j][i].mean = -pairs[i][j].mean;
      }
    }
  }
  return all;
}

/// Who is ahead of all others, or of most if they go in a circle.
std::size_t bestIn(const Pairs& pairs) {
  const auto ahead = [](const std::vector<Estimate>& ratios) {
    return std::count_if(ratios.begin(), ratios.end(),
                         [](const Estimate& ratio) { return ratio.mean >= 0; });
  };
  return static_cast<std::size_t>(
      std::max_element(pairs.begin(), pairs.end(),
                       [&](const auto& a, const auto& b) { return ahead(a) < ahead(b); }) -
      pairs.begin());
}

/// Whether it is behind none of the others so far that it cannot be the best.
bool mayBeBest(const std::vector<Estimate>& ratios) {
  constexpr double kError = 0.05;
  return std::all_of(ratios.begin(), ratios.end(), [&](const Estimate& ratio) {
    const double freedom = ratio.variance.freedom;
    return ratio.mean >= 0 || !(freedom > 0) ||
           -ratio.mean <=
               std::sqrt(ratio.variance.value) *
                   criticalValue(kError / static_cast<double>(ratios.size() - 1), freedom);
  });
}

std::vector<Ranked> rankingOf(const Pairs& pairs) {
  std::vector<Ranked> ranking;
  if (pairs.empty()) {
    return ranking;
  }
  const std::size_t best = bestIn(pairs);
  ranking.push_back({best, {1, 1, 1}, true});
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (i != best) {
      ranking.push_back({i, exponential(intervalOf(pairs[i][best])), mayBeBest(pairs[i])});
    }
  }
  std::stable_sort(ranking.begin() + 1, ranking.end(), [](const Ranked& one, const Ranked& other) {
    return one.ratio.middle > other.ratio.middle;
  });
  return ranking;
}

}  // namespace

std::vector<std::vector<Ranked>> rankingsOf(const std::vector<CellsBlocks>& groups) {
  std::vector<std::vector<Ranked>> rankings;
  for (const Pairs& pairs : pairsOf(groups)) {
    rankings.push_back(rankingOf(pairs));
  }
  return rankings;
}

Estimate ratioOf(const std::vector<BlockValue>& blocks, const std::vector<BlockValue>& others) {
  const std::vector<double> together = differences(blocks, others);
  const bool isEnough =
      together.size() > 1 && 2 * together.size() >= std::min(blocks.size(), others.size());
  return isEnough ? estimateOf(together)
                  : difference(estimateOf(valuesOf(blocks)), estimateOf(valuesOf(others)));
}

}  // namespace survey
