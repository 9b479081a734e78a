#include "survey/statistics/CommonFactor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "survey/statistics/Averages.h"

namespace survey {
namespace {

/// Sightings to either side that count as neighbours: a second or so.
constexpr std::size_t kReach = 8;
/// Values nearer than this are on the same side of a jump: more than what most visits differ by on
/// a noisy machine, less than what levels do (35 percent).
constexpr double kSameLevel = 0.2;
/// With fewer values of other cells on its side a value is taken for an outlier.
constexpr int kFewestNeighbours = 4;
/// Turns of the effects' medians: over all differences first, then over those of one side.
constexpr int kWideTurns = 4;
constexpr int kNarrowTurns = 8;
constexpr int kTurnsOfPart = 4;

class Series {
 public:
  Series(std::span<const Sighting> ofTime, std::size_t cellCount)
      : sightings(ofTime), effects(cellCount, 0.0) {
    std::vector<std::vector<double>> values(cellCount);
    for (const Sighting& sighting : sightings) {
      std::vector<double>& own = values[sighting.cell];
      own.insert(own.end(), sighting.values.begin(), sighting.values.end());
    }
    for (std::size_t cell = 0; cell < cellCount; ++cell) {
      effects[cell] = values[cell].empty() ? 0 : median(std::move(values[cell]));
    }
  }

  Series(std::span<const Sighting> ofTime, std::vector<double> known)
      : sightings(ofTime), effects(std::move(known)) {}

  void polishEffects(int turns, double gap) {
    for (int turn = 0; turn < turns; ++turn) {
      polishEffects(gap);
    }
  }

  CommonFactorFit fit() const {
    CommonFactorFit fit{{}, {}, effects};
    for (std::size_t i = 0; i < sightings.size(); ++i) {
      fit.corrected.push_back(corrected(i));
      fit.levels.push_back(median(sightings[i].values) - fit.corrected.back());
    }
    return fit;
  }

 private:
  /// Moves every effect to the median of its differences from the neighbours' levels; differences
  /// further away from the present effect than `gap` do not count.
  void polishEffects(double gap) {
    std::vector<std::vector<double>> differences(effects.size());
    for (std::size_t i = 0; i < sightings.size(); ++i) {
      const std::size_t cell = sightings[i].cell;
      for (const Neighbour& neighbour : neighboursOf(i)) {
        for (const double value : sightings[i].values) {
          const double difference = value - neighbour.level;
          if (std::abs(difference - effects[cell]) < gap) {
            differences[cell].push_back(difference);
          }
        }
      }
    }
    for (std::size_t cell = 0; cell < effects.size(); ++cell) {
      if (!differences[cell].empty()) {
        effects[cell] = median(std::move(differences[cell]));
      }
    }
    const double middle = median(effects);
    for (double& effect : effects) {
      effect -= middle;
    }
  }

  /// The median of a sighting's values, each without the level of the neighbours on its side.
  double corrected(std::size_t index) const {
    const std::vector<Neighbour> around = neighboursOf(index);
    std::vector<double> values = sightings[index].values;
    for (double& value : values) {
      value -= levelAt(value - effects[sightings[index].cell], around);
    }
    return median(std::move(values));
  }

  struct Neighbour {
    double level;  ///< of the machine, as its value without its cell's effect says
    bool sameCell;
  };

  std::vector<Neighbour> neighboursOf(std::size_t index) const {
    std::vector<Neighbour> neighbours;
    const std::size_t first = index - std::min(index, kReach);
    const std::size_t last = std::min(index + kReach, sightings.size() - 1);
    for (std::size_t i = first; i <= last; ++i) {
      if (i != index) {
        for (const double value : sightings[i].values) {
          neighbours.push_back(
              {value - effects[sightings[i].cell], sightings[i].cell == sightings[index].cell});
        }
      }
    }
    return neighbours;
  }

  /// The mean of those near to what the value itself says; that of all where too few other cells
  /// are among these, as the value is an outlier then, or they are its own process's luck.
  static double levelAt(double own, const std::vector<Neighbour>& around) {
    double sum = 0;
    double overall = 0;
    int near = 0;
    int others = 0;
    for (const Neighbour& neighbour : around) {
      overall += neighbour.level / static_cast<double>(around.size());
      if (std::abs(neighbour.level - own) < kSameLevel) {
        sum += neighbour.level;
        ++near;
        others += neighbour.sameCell ? 0 : 1;
      }
    }
    return others >= kFewestNeighbours ? sum / near : overall;
  }

  std::span<const Sighting> sightings;
  std::vector<double> effects;
};

}  // namespace

CommonFactorFit fitCommonFactor(std::span<const Sighting> sightings, std::size_t cellCount) {
  if (sightings.empty()) {
    return {{}, {}, std::vector<double>(cellCount, 0.0)};
  }
  Series series(sightings, cellCount);
  series.polishEffects(kWideTurns, std::numeric_limits<double>::infinity());
  series.polishEffects(kNarrowTurns, kSameLevel);
  return series.fit();
}

CommonFactorFit fitPart(std::span<const Sighting> sightings, const std::vector<double>& effects) {
  Series series(sightings, effects);
  series.polishEffects(kTurnsOfPart, kSameLevel);
  return series.fit();
}

}  // namespace survey
