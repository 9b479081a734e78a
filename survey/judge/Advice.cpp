#include "survey/judge/Advice.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>

#include "survey/judge/Ranking.h"
#include "survey/judge/States.h"
#include "words/DrawMethods.h"

namespace survey {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;
constexpr std::size_t kCosts = 3;
using Vector = std::array<double, kCosts>;

/// What a model consists of: itself, its strips, its vertices.
Vector partsOf(double strips, double vertices) {
  return {1, strips, vertices};
}
Vector partsOf(const Question& question) {
  return partsOf(question.strips, question.triangles + 2 * question.strips);
}
/// A square mesh has as many strips as its detail.
Vector partsOf(unsigned int detail) {
  return partsOf(detail, 2.0 * detail * (detail + 1.0));
}

double product(const Vector& one, const Vector& other) {
  double sum = 0;
  for (std::size_t i = 0; i < kCosts; ++i) {
    sum += one[i] * other[i];
  }
  return sum;
}

/// A symmetric system of equations for some of the costs; the others are 0.
struct Equations {
  std::array<Vector, kCosts> matrix{};
  Vector right{};

  void add(const Vector& parts, double time, double weight) {
    for (std::size_t i = 0; i < kCosts; ++i) {
      for (std::size_t j = 0; j < kCosts; ++j) {
        matrix[i][j] += weight * parts[i] * parts[j];
      }
      right[i] += weight * parts[i] * time;
    }
  }

  /// By Gauss and Jordan; none where they do not tell. `chosen` has a bit for each cost.
  std::optional<Vector> solution(unsigned int chosen) const {
    constexpr double kNothing = 1e-12;
    auto rows = matrix;
    Vector values = right;
    for (std::size_t i = 0; i < kCosts; ++i) {
      if ((chosen >> i & 1U) == 0) {
        continue;
      }
      if (!(rows[i][i] > kNothing * matrix[i][i])) {
        return std::nullopt;
      }
      for (std::size_t j = 0; j < kCosts; ++j) {
        const double factor = j == i ? 0 : rows[j][i] / rows[i][i];
        for (std::size_t k = 0; k < kCosts; ++k) {
          rows[j][k] -= factor * rows[i][k];
        }
        values[j] -= factor * values[i];
      }
    }
    Vector found{};
    for (std::size_t i = 0; i < kCosts; ++i) {
      found[i] = (chosen >> i & 1U) != 0 ? values[i] / rows[i][i] : 0;
    }
    return found;
  }
};

struct Point {
  unsigned int detail;
  double time;
};

/// Least squares of the relative errors without negative costs (Lawson and Hanson, 1974); of so few
/// costs all choices can be tried.
Vector fitted(const std::vector<Point>& points) {
  Equations equations;
  for (const Point& point : points) {
    equations.add(partsOf(point.detail), point.time, 1 / (point.time * point.time));
  }
  Vector best{};
  double least = std::numeric_limits<double>::infinity();
  for (unsigned int chosen = 1; chosen < 1U << kCosts; ++chosen) {
    const auto costs = equations.solution(chosen);
    if (!costs || std::any_of(costs->begin(), costs->end(), [](double cost) { return cost < 0; })) {
      continue;
    }
    double squares = 0;
    for (const Point& point : points) {
      squares += std::pow(product(*costs, partsOf(point.detail)) / point.time - 1, 2);
    }
    if (squares < least) {
      least = squares;
      best = *costs;
    }
  }
  return best;
}

/// Points of one method, by block and detail.
using Points = std::map<std::size_t, std::vector<Point>>;

std::map<std::string, Points> pointsOf(const SideView& side) {
  const States states = statesOf(*side.record);
  const CellsBlocks rates = blockRatesOf(side, states.visitsIn(states.shown)).all;
  std::map<std::string, Points> points;
  for (std::size_t cell = 0; cell < rates.size(); ++cell) {
    for (const BlockValue& rate : rates[cell]) {
      const auto primitives = static_cast<double>(side.state(cell).answer->primitivesPerModel);
      points[side.cell(cell).method][rate.block].push_back(
          {side.cell(cell).detail, kNanosecondsPerSecond * primitives / std::exp(rate.value)});
    }
  }
  return points;
}

/// What the blocks say of one method.
struct Fits {
  std::vector<BlockValue> speeds;  ///< logarithms: less time is more
  std::array<std::vector<double>, kCosts> costs;
  std::map<unsigned int, std::vector<double>> misses;  ///< logarithms, by detail
};

Fits fitsOf(const Points& points, const Vector& asked) {
  std::size_t details = 0;
  for (const auto& [block, ofBlock] : points) {
    details = std::max(details, ofBlock.size());
  }
  Fits fits;
  for (const auto& [block, ofBlock] : points) {
    if (ofBlock.size() < details || details < kCosts) {
      continue;  // others would be other fits
    }
    const Vector costs = fitted(ofBlock);
    fits.speeds.push_back({block, -std::log(product(costs, asked))});
    for (std::size_t i = 0; i < kCosts; ++i) {
      fits.costs[i].push_back(costs[i]);
    }
    for (const Point& point : ofBlock) {
      fits.misses[point.detail].push_back(
          std::log(product(costs, partsOf(point.detail)) / point.time));
    }
  }
  return fits;
}

MethodAdvice adviceOf(const std::string& method, const Fits& fits) {
  MethodAdvice advice{.method = method, .blocks = fits.speeds.size()};
  const Interval speed = exponential(intervalOf(estimateOf(valuesOf(fits.speeds))));
  advice.time = {1 / speed.high, 1 / speed.middle, 1 / speed.low};
  Interval* const costs[] = {&advice.perModel, &advice.perStrip, &advice.perVertex};
  for (std::size_t i = 0; i < kCosts; ++i) {
    *costs[i] = intervalOf(estimateOf(fits.costs[i]));
    costs[i]->low = std::max(0.0, costs[i]->low);
  }
  for (const auto& [detail, misses] : fits.misses) {
    const double miss = std::abs(std::expm1(estimateOf(misses).mean));
    if (miss > advice.miss) {
      advice.miss = miss;
      advice.detail = detail;
    }
  }
  advice.time.low *= 1 - std::min(advice.miss, 1.0);
  advice.time.high *= 1 + advice.miss;
  return advice;
}

}  // namespace

std::vector<MethodAdvice> adviceFor(const Question& question, const SideView& side) {
  std::vector<MethodAdvice> found;
  CellsBlocks speeds;
  for (const auto& [method, points] : pointsOf(side)) {
    const Fits fits = fitsOf(points, partsOf(question));
    if (!fits.speeds.empty()) {
      found.push_back(adviceOf(method, fits));
      speeds.push_back(fits.speeds);
    }
  }
  std::vector<MethodAdvice> ranked;
  const std::vector<Ranked> ranking = rankingsOf({speeds}).front();
  for (const auto& [member, ratio, leads] : ranking) {
    MethodAdvice& advice = ranked.emplace_back(found[member]);
    advice.times = {1 / ratio.high, 1 / ratio.middle, 1 / ratio.low};
    advice.leads = leads;
  }
  return ranked;
}

std::vector<std::string> methodsFor(const Question& question) {
  std::vector<std::string> methods;
  for (const DrawMethodWord& row : kDrawMethodWords) {
    const bool fits =
        question.changes ? row.use != VertexUse::kKept : row.use != VertexUse::kStreamed;
    if (fits && (row.inCoreProfile || !question.core)) {
      methods.emplace_back(row.word);
    }
  }
  return methods;
}

std::vector<unsigned int> detailsFor(const Question& question) {
  constexpr Vector kUsual = {1000, 100, 5};  // nanoseconds
  constexpr std::array<unsigned int, 19> kDetails = {1,  2,  3,  4,   6,   8,   12,  16,  24, 32,
                                                     48, 64, 96, 128, 192, 256, 384, 512, 768};
  constexpr int kWanted = 4;
  /// Far larger models may be another matter, as they fill other caches.
  constexpr double kMostTimes = 4;
  const Vector asked = partsOf(question);
  std::vector<unsigned int> candidates;
  std::copy_if(kDetails.begin(), kDetails.end(), std::back_inserter(candidates),
               [&](unsigned int detail) {
                 constexpr unsigned int kSmall = 8;
                 return detail <= kSmall || partsOf(detail)[2] <= kMostTimes * asked[2];
               });
  std::vector<unsigned int> best;
  double least = std::numeric_limits<double>::infinity();
  for (unsigned int chosen = 0; chosen < 1U << candidates.size(); ++chosen) {
    if (std::popcount(chosen) != kWanted) {
      continue;
    }
    std::vector<unsigned int> details;
    Equations equations;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      if ((chosen >> i & 1U) != 0) {
        const Vector parts = partsOf(candidates[i]);
        details.push_back(candidates[i]);
        equations.add(parts, 0, 1 / std::pow(product(kUsual, parts), 2));
      }
    }
    equations.right = asked;
    if (const auto inverse = equations.solution((1U << kCosts) - 1)) {
      if (const double variance = product(*inverse, asked); variance < least) {
        least = variance;
        best = details;
      }
    }
  }
  return best;
}

}  // namespace survey
