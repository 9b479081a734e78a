/// The page's charts, as SVG elements to stand in HTML: they take the width that they are given,
/// text stays text in the page's own colour, and a title says what is shown. Colours are those of
/// Okabe and Ito (2008), which all eyes tell apart; shapes and words say the same again.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "survey/judge/Changes.h"
#include "survey/statistics/Estimate.h"

namespace survey {

struct Bars {
  std::string label;
  std::vector<std::optional<Interval>> values;  ///< one for each name
};
/// A group of bars under each label, one bar for each name, with whiskers for intervals; a bar
/// whose interval is not known is pale. The names stand in a key where there are several.
std::string barChart(const std::string& title, const std::vector<Bars>& bars,
                     const std::vector<std::string>& names, const std::string& unit);

struct Line {
  struct Point {
    double x;
    Interval y;
  };
  std::string name;
  std::vector<Point> points;
};
/// Rates over detail, both logarithmic.
std::string lineChart(const std::string& title, const std::vector<Line>& lines,
                      const std::string& unit);

struct Ratio {
  std::string label;
  Interval ratio;
  Verdict verdict;
};
/// Around 1, with the threshold (in percent) as a band.
std::string ratioChart(const std::string& title, const std::vector<Ratio>& ratios,
                       const std::string& axis, double threshold);

}  // namespace survey
