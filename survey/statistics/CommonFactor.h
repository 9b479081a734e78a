/// Takes out of a series of measurements what the machine did to all of them.
///
/// A machine whose own speed moves multiplies all figures taken at one time by a common factor. On
/// logarithms that is a two-way fit: value = effect of the cell + level of the machine at that
/// time. Levels jump, for less than a second or for minutes, so the level of a round is not one
/// number: it is looked for among the neighbours in time.
///
/// - Effects: medians, by turns, as in Tukey's median polish (1977), of the differences between a
///   visit of the cell and its neighbours. A jump spoils only the differences across it.
/// - Levels: the sigma filter (Lee, 1983), the mean of those neighbours that lie near the value
///   itself; so a level is taken from the same side of a jump, and what is near to none of its
///   neighbours stays visible as an outlier.
///
/// The filter draws values towards their cell's effect, so the scatter of what is left says too
/// little of how sure the effects are: repeat the fit with a part left out to see that.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace survey {

/// Several measurements of one cell, one right after the other: logarithms of rates.
struct Sighting {
  std::size_t cell;
  std::vector<double> values;  ///< at least one
};

struct CommonFactorFit {
  std::vector<double> levels;     ///< of the machine during each sighting
  std::vector<double> corrected;  ///< each sighting's median value without the level
  std::vector<double> effects;    ///< of the cells
};

/// `sightings` in the order of time, of cells below `cellCount`. The level's zero is arbitrary: it
/// is the same for all cells, so differences between cells have a meaning. Where there is one cell
/// alone, its own values are all that the levels are known from.
CommonFactorFit fitCommonFactor(std::span<const Sighting> sightings, std::size_t cellCount);

/// The same of some of the sightings that gave the effects, which are near already.
CommonFactorFit fitPart(std::span<const Sighting> sightings, const std::vector<double>& effects);

}  // namespace survey
