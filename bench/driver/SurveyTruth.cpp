// How far surveys repeated on one machine agree, beside sweeps of runs one after the other. Reads
// from standard input a line a cell and sitting:
//   survey SITTING GROUP CELL RATIO LOW HIGH    (to the best of its group, with its interval)
//   sweep SITTING GROUP CELL FIGURE
// Prints for each cell how many of the intervals hold the median of the other sittings, half their
// width, and the interquartile ranges of its ratios to the best cell of its group over the surveys
// and over the sweeps. Cells and ratios of those that are the best themselves are left out: they
// are 1 by definition.
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "survey/statistics/Averages.h"

namespace {

using survey::median;
using survey::quantile;

struct Ratio {
  double middle, low, high;
};

using Sitting = std::map<std::string, Ratio>;  // by cell
using Sittings = std::map<int, Sitting>;       // by number

/// In percent of the median.
double spread(const std::vector<double>& values) {
  return 100 * (quantile(values, 0.75) - quantile(values, 0.25)) / median(values);
}

/// Of the sittings that have both cells.
std::vector<double> ratiosTo(const std::string& reference, const std::string& cell,
                             const Sittings& sittings) {
  std::vector<double> ratios;
  for (const auto& [number, sitting] : sittings) {
    if (sitting.contains(cell) && sitting.contains(reference)) {
      ratios.push_back(sitting.at(cell).middle / sitting.at(reference).middle);
    }
  }
  return ratios;
}

std::vector<double> valuesOf(const std::string& cell, const Sittings& sittings, int but) {
  std::vector<double> values;
  for (const auto& [number, sitting] : sittings) {
    if (number != but && sitting.contains(cell)) {
      values.push_back(sitting.at(cell).middle);
    }
  }
  return values;
}

struct Summary {
  std::vector<double> coverages, halfWidths, surveySpreads, sweepSpreads;
};

void judge(const std::string& cell, const std::string& reference, const Sittings& surveys,
           const Sittings& sweeps, Summary& summary) {
  int held = 0;
  std::vector<double> halfWidths;
  for (const auto& [number, sitting] : surveys) {
    const std::vector<double> others = valuesOf(cell, surveys, number);
    const auto found = sitting.find(cell);
    if (found == sitting.end() || others.empty() || found->second.low == found->second.high) {
      continue;
    }
    const auto& [middle, low, high] = found->second;
    held += low <= median(others) && median(others) <= high ? 1 : 0;
    halfWidths.push_back(100 * (high - low) / 2 / middle);
  }
  const std::vector<double> ofSurveys = ratiosTo(reference, cell, surveys);
  const std::vector<double> ofSweeps = ratiosTo(reference, cell, sweeps);
  if (halfWidths.empty() || ofSweeps.empty()) {
    return;
  }
  summary.coverages.push_back(held / static_cast<double>(halfWidths.size()));
  summary.halfWidths.push_back(median(halfWidths));
  summary.surveySpreads.push_back(spread(ofSurveys));
  summary.sweepSpreads.push_back(spread(ofSweeps));
  std::printf("| `%s` | %.3f | %d of %zu | %.1f %% | %.1f %% | %.1f %% |\n", cell.c_str(),
              median(ofSurveys), held, halfWidths.size(), summary.halfWidths.back(),
              summary.surveySpreads.back(), summary.sweepSpreads.back());
}

/// The cell whose ratio is the highest in the median.
std::string bestOf(const std::vector<std::string>& cells, const Sittings& surveys) {
  return *std::max_element(cells.begin(), cells.end(), [&](const auto& a, const auto& b) {
    return median(valuesOf(a, surveys, -1)) < median(valuesOf(b, surveys, -1));
  });
}

double mean(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) {
    sum += value / static_cast<double>(values.size());
  }
  return sum;
}

}  // namespace

int main() {
  Sittings surveys, sweeps;
  std::map<std::string, std::vector<std::string>> groups;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string kind, group, cell;
    int sitting = 0;
    Ratio ratio{};
    words >> kind >> sitting >> group >> cell >> ratio.middle;
    if (!words || ratio.middle <= 0) {  // a run without a figure
      continue;
    }
    if (kind == "sweep") {
      sweeps[sitting][cell] = ratio;
    } else if (words >> ratio.low >> ratio.high) {
      surveys[sitting][cell] = ratio;
      std::vector<std::string>& cells = groups[group];
      if (std::find(cells.begin(), cells.end(), cell) == cells.end()) {
        cells.push_back(cell);
      }
    }
  }

  std::puts(
      "| Cell | ratio | intervals that hold the others' median | half of an interval | spread over "
      "surveys | over sweeps |\n| --- | ---: | ---: | ---: | ---: | ---: |");
  Summary summary;
  for (const auto& [group, cells] : groups) {
    const std::string best = bestOf(cells, surveys);
    for (const std::string& cell : cells) {
      if (cell != best) {
        judge(cell, best, surveys, sweeps, summary);
      }
    }
  }
  if (summary.coverages.empty()) {
    std::fputs("survey_truth: there is no cell that surveys and sweeps have both\n", stderr);
    return 1;
  }
  const double surveySpread = median(summary.surveySpreads);
  const double sweepSpread = median(summary.sweepSpreads);
  std::printf(
      "\nMean coverage %.3f, median half-width %.2f %%, median spread %.2f %% over %zu surveys and "
      "%.2f %% over %zu sweeps, %.1f times as much.\n",
      mean(summary.coverages), median(summary.halfWidths), surveySpread, surveys.size(),
      sweepSpread, sweeps.size(), sweepSpread / surveySpread);
  return 0;
}
