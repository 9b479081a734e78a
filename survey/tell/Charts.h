/// The page's charts. Colours are those of Okabe and Ito (2008), which all eyes tell apart; shapes
/// and words say the same again.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "survey/judge/Changes.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Draws charts whose ids differ.
class Charts {
 public:
  struct Bars {
    std::string label;
    std::vector<std::optional<Interval>> values;  ///< one for each name
  };
  /// A group of bars under each label, one bar for each name, with whiskers for intervals. The
  /// names stand in a key where there are several.
  std::string bars(const std::string& title, const std::vector<Bars>& bars,
                   const std::vector<std::string>& names, const std::string& unit);

  struct Point {
    double x;
    Interval y;
  };
  struct Line {
    std::string name;
    std::vector<Point> points;
  };
  /// Rates over detail, both logarithmic.
  std::string lines(const std::string& title, const std::vector<Line>& lines,
                    const std::string& unit);

  struct Ratio {
    std::string label;
    Interval ratio;
    Verdict verdict;
  };
  /// Around 1, with the threshold (in percent) as a band.
  std::string ratios(const std::string& title, const std::vector<Ratio>& ratios,
                     const std::string& axis, double threshold);

 private:
  std::string draw(const std::string& title, const std::string& script, int height);

  int drawn_ = 0;
};

}  // namespace survey
