#include "survey/judge/Explanation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <regex>
#include <tuple>
#include <utility>

#include "survey/judge/Figures.h"
#include "survey/statistics/Significance.h"

namespace survey {
namespace {

using Key = std::pair<std::string, std::string>;  // function and file

/// Nanoseconds a vertex on either side in one block.
struct Pair {
  double base = 0;
  double newer = 0;
};

/// "libgallium.so" for libgallium-25.0.7-1.so and libgallium.so.1.2.
std::string withoutVersion(const std::string& file) {
  static const std::regex kVersion(R"(-[0-9][^/]*(?=\.so)|(\.so)(\.[0-9]+)+$)");
  return std::regex_replace(file, kVersion, "$1");
}

double verticesOf(const Profile& profile, const CellAnswer& answer) {
  return static_cast<double>(profile.primitives) / static_cast<double>(answer.primitivesPerModel) *
         answer.callsPerModel * answer.verticesPerCall;
}

/// What a cell's samples say, block by block.
struct Samples {
  std::size_t blocks = 0;
  std::vector<Pair> whole;
  std::vector<Pair> outside;
  std::map<Key, std::vector<Pair>> functions;
  std::map<Key, std::pair<std::uint64_t, std::uint64_t>> sizes;  ///< on either side

  void add(double Pair::*side, std::size_t block, const Profile& profile, double vertices) {
    double inFunctions = 0;
    for (const FunctionTime& time : profile.functions) {
      const Key key(time.function, withoutVersion(time.file));
      (side == &Pair::base ? sizes[key].first : sizes[key].second) = time.size;
      std::vector<Pair>& pairs = functions[key];
      pairs.resize(blocks);
      pairs[block].*side += time.nanoseconds / vertices;
      inFunctions += time.nanoseconds / vertices;
    }
    whole[block].*side = profile.time / vertices;
    outside[block].*side = profile.time / vertices - inFunctions;
  }
};

double meanOf(const std::vector<Pair>& pairs, double Pair::*side) {
  double sum = 0;
  for (const Pair& pair : pairs) {
    sum += pair.*side;
  }
  return sum / static_cast<double>(pairs.size());
}

/// New without base.
Estimate changeOf(const std::vector<Pair>& pairs) {
  std::vector<double> changes;
  std::transform(pairs.begin(), pairs.end(), std::back_inserter(changes),
                 [](const Pair& pair) { return pair.newer - pair.base; });
  return estimateOf(changes);
}

FunctionChange functionChange(const Key& key, const std::vector<Pair>& pairs) {
  FunctionChange change;
  std::tie(change.function, change.file) = key;
  change.base = meanOf(pairs, &Pair::base);
  change.newer = meanOf(pairs, &Pair::newer);
  change.change = intervalOf(changeOf(pairs));
  return change;
}

double probabilityOfNoChange(const std::vector<Pair>& pairs) {
  const Estimate change = changeOf(pairs);
  const double error = std::sqrt(change.variance.value);
  return change.mean == 0 ? 1
                          : std::min(1.0, 2 * probabilityAbove(std::abs(change.mean) / error,
                                                               change.variance.freedom));
}

Explanation explanationOf(std::size_t cell, Samples samples) {
  constexpr double kLeastPart = 0.003;  // of the time, on either side
  Explanation explanation;
  explanation.cell = cell;
  explanation.blocks = samples.blocks;
  explanation.base = meanOf(samples.whole, &Pair::base);
  explanation.newer = meanOf(samples.whole, &Pair::newer);
  explanation.outside = functionChange({}, samples.outside);
  std::vector<double> probabilities;
  for (auto& [key, pairs] : samples.functions) {
    pairs.resize(samples.blocks);
    FunctionChange change = functionChange(key, pairs);
    std::tie(change.baseSize, change.newSize) = samples.sizes[key];
    if (change.base > kLeastPart * explanation.base ||
        change.newer > kLeastPart * explanation.newer) {
      explanation.functions.push_back(change);
      probabilities.push_back(probabilityOfNoChange(pairs));
    }
  }
  constexpr double kFalseAlarms = 0.05;
  const std::vector<bool> changed = positives(probabilities, kFalseAlarms);
  for (std::size_t i = 0; i < changed.size(); ++i) {
    explanation.functions[i].changed = changed[i];
  }
  std::stable_sort(explanation.functions.begin(), explanation.functions.end(),
                   [](const FunctionChange& one, const FunctionChange& other) {
                     return std::pair(one.changed, std::abs(one.change.middle)) >
                            std::pair(other.changed, std::abs(other.change.middle));
                   });
  return explanation;
}

/// What a call takes more at one detail, and the square of its standard error.
struct CallPoint {
  double vertices;
  double more;
  double variance;
};

CallPoint callPointOf(const CellChange& change, const CellAnswer& answer, double rate) {
  constexpr double kNanosecondsPerSecond = 1e9;
  constexpr double kErrors = 1.96;  // from the middle of an interval of 95 % to its end
  const double perCall = kNanosecondsPerSecond * static_cast<double>(answer.primitivesPerModel) /
                         (rate * answer.callsPerModel);
  const Interval& ratio = change.change.ratio;
  const double error = perCall * (1 / ratio.low - 1 / ratio.high) / 2 / kErrors;
  return {answer.verticesPerCall, perCall * (1 / ratio.middle - 1), error * error};
}

/// The line's value at no vertices, and its slope.
std::pair<Interval, Interval> lineThrough(const std::vector<CallPoint>& points) {
  double weights = 0;
  double vertices = 0;
  double squares = 0;
  double more = 0;
  double products = 0;
  for (const CallPoint& point : points) {
    const double weight = 1 / point.variance;
    weights += weight;
    vertices += weight * point.vertices;
    squares += weight * point.vertices * point.vertices;
    more += weight * point.more;
    products += weight * point.vertices * point.more;
  }
  const double determinant = weights * squares - vertices * vertices;
  const auto interval = [&](double value, double variance) {
    return intervalOf({value, {variance, std::numeric_limits<double>::infinity()}});
  };
  return {interval((squares * more - vertices * products) / determinant, squares / determinant),
          interval((weights * products - vertices * more) / determinant, weights / determinant)};
}

bool isChange(const CellChange& cell) {
  return cell.change.verdict == Verdict::kSlower || cell.change.verdict == Verdict::kFaster;
}

}  // namespace

std::vector<CallChange> callChangesOf(const Changes& changes) {
  /// Of one method with one primitive and one set of attributes.
  struct Method {
    std::vector<CallPoint> points;
    std::size_t cell = 0;
    bool changed = false;
  };
  std::map<std::size_t, double> rates;
  for (const Group& group : figuresOf(changes.base).groups) {
    for (const CellFigure& figure : group.ranking) {
      rates[figure.cell] = figure.rate.middle;
    }
  }
  std::map<std::array<std::string, 3>, Method> methods;
  for (const CellChange& cell : changes.cells) {
    const Cell& planned = changes.base.cell(cell.base);
    const auto rate = rates.find(cell.base);
    if (rate != rates.end() && std::isfinite(cell.change.ratio.high) && cell.change.ratio.low > 0) {
      Method& method = methods[{planned.method, planned.primitive, planned.with}];
      method.points.push_back(
          callPointOf(cell, *changes.base.state(cell.base).answer, rate->second));
      method.cell = cell.base;
      method.changed = method.changed || isChange(cell);
    }
  }
  std::vector<CallChange> result;
  for (const auto& [name, method] : methods) {
    const auto [least, most] = std::minmax_element(
        method.points.begin(), method.points.end(),
        [](const CallPoint& one, const CallPoint& other) { return one.vertices < other.vertices; });
    const bool known = std::all_of(method.points.begin(), method.points.end(),
                                   [](const CallPoint& point) { return point.variance > 0; });
    if (method.changed && known && most->vertices > least->vertices) {
      const auto [perCall, perVertex] = lineThrough(method.points);
      result.push_back({method.cell, perCall, perVertex});
    }
  }
  return result;
}

std::vector<Explanation> explanationsOf(const SideView& base, const SideView& newer) {
  std::map<std::size_t, std::vector<const ProfiledVisit*>> visits;
  for (const ProfiledVisit& visit : newer.record->profiles) {
    const CellState& ofBase = base.state(visit.cell);
    const CellState& ofNew = newer.state(visit.cell);
    if (ofBase.answer && ofBase.answer->hasFigure() && ofNew.answer && ofNew.answer->hasFigure() &&
        visit.sides[base.index].primitives > 0 && visit.sides[newer.index].primitives > 0) {
      visits[visit.cell].push_back(&visit);
    }
  }
  std::vector<Explanation> explanations;
  for (const auto& [cell, ofCell] : visits) {
    Samples samples;
    std::string whyNot;
    samples.whole.resize(ofCell.size());
    samples.outside.resize(ofCell.size());
    samples.blocks = ofCell.size();
    for (std::size_t block = 0; block < ofCell.size(); ++block) {
      for (const auto& [side, view] :
           {std::pair(&Pair::base, &base), std::pair(&Pair::newer, &newer)}) {
        const Profile& profile = ofCell[block]->sides[view->index];
        samples.add(side, block, profile, verticesOf(profile, *view->state(cell).answer));
        whyNot = profile.whyNot.empty() ? whyNot : profile.whyNot;
      }
    }
    explanations.push_back(explanationOf(cell, std::move(samples)));
    explanations.back().whyNot = whyNot;
  }
  return explanations;
}

}  // namespace survey
