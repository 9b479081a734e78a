#include "survey/tell/Charts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include <fmt/format.h>

#include "survey/tell/Gnuplot.h"

namespace survey {
namespace {

/// A telephone's, so that letters stay readable there; wider pages show several side by side.
constexpr int kWidth = 400;
constexpr int kRowHeight = 15;
constexpr int kFrameHeight = 62;  // axis, its tics and label

constexpr const char* kColours[] = {"#0072B2", "#E69F00", "#009E73", "#D55E00",
                                    "#56B4E9", "#CC79A7", "#999999"};
constexpr std::size_t kColourCount = std::size(kColours);

const char* colour(std::size_t index) {
  return kColours[index % kColourCount];
}

/// Between single quotes gnuplot takes everything but these as it is.
std::string quoted(std::string text) {
  for (std::size_t place = 0; (place = text.find('\'', place)) != std::string::npos; place += 2) {
    text.insert(place, 1, '\'');
  }
  std::replace(text.begin(), text.end(), '\n', ' ');
  return '\'' + text + '\'';
}

std::string styleOfAll() {
  return fmt::format(
      "set border 1 linecolor rgb '{0}'\nset tics nomirror textcolor rgb '{0}'\n"
      "set key textcolor rgb '{0}'\nset xlabel textcolor rgb '{0}'\nset ylabel textcolor rgb "
      "'{0}'\n"
      "set grid x linecolor rgb '#999999' dashtype 3\nset datafile missing '?'\n",
      kInk);
}

bool isFinite(const Interval& interval) {
  return std::isfinite(interval.low) && std::isfinite(interval.high);
}

std::string labelAt(const std::string& text, double y) {
  return fmt::format(
      "set label {} at graph 0, first {} left offset 0.3,0 textcolor rgb '{}' front\n",
      quoted(text), y, kInk);
}

}  // namespace

std::string Charts::draw(const std::string& title, const std::string& script, int height) {
  return svgOf(styleOfAll() + script, kWidth, height, fmt::format("chart{}", ++drawn_), title);
}

std::string Charts::bars(const std::string& title, const std::vector<Bars>& bars,
                         const std::vector<std::string>& names, const std::string& unit) {
  const std::size_t rows = bars.size() * (names.size() + 1);
  std::string script = fmt::format(
      "set yrange [-{}.2:0.5]\nset xrange [0:*]\nunset ytics\nset xlabel {}\nset lmargin 2\n", rows,
      quoted(unit));
  std::vector<std::string> boxes(names.size());
  std::string whiskers;
  double y = 0;
  for (const Bars& group : bars) {
    script += labelAt(group.label, y);
    y -= 1;
    for (std::size_t i = 0; i < names.size(); ++i, y -= 1) {
      if (const auto& value = group.values[i]) {
        boxes[i] += fmt::format("0 {0} 0 {1} {2} {3}\n", y, value->middle, y - 0.42, y + 0.42);
        whiskers += isFinite(*value)
                        ? fmt::format("{} {} {} {}\n", value->middle, y, value->low, value->high)
                        : "";
      }
    }
  }
  std::string plots;
  for (std::size_t i = 0; i < names.size(); ++i) {
    script +=
        fmt::format("$bars{} << END\n{}END\n", i, boxes[i].empty() ? "? ? ? ? ? ?\n" : boxes[i]);
    plots += fmt::format(
        "$bars{} with boxxyerror fillstyle solid 1 noborder linecolor rgb '{}' "
        "title {}, ",
        i, colour(i), quoted(names[i]));
  }
  script += fmt::format("$whiskers << END\n{}END\n", whiskers.empty() ? "? ? ? ?\n" : whiskers);
  const bool hasKey = names.size() > 1;
  script += hasKey ? "set key below maxcols 1 left Left reverse\n" : "unset key\n";
  script += "plot " + plots +
            fmt::format(
                "$whiskers using 1:2:3:4 with xerrorbars linecolor rgb '{}' pointtype -1 "
                "notitle\n",
                kInk);
  const std::size_t keyRows = hasKey ? names.size() : 0;
  return draw(title, script, kFrameHeight + kRowHeight * static_cast<int>(rows + keyRows));
}

std::string Charts::lines(const std::string& title, const std::vector<Line>& lines,
                          const std::string& unit) {
  std::string script = fmt::format(
      "set border 3\nset grid y linecolor rgb '#999999' dashtype 3\nset logscale xy\n"
      "set xlabel 'detail'\nset ylabel {}\nset key below maxcols 1 left Left reverse\n",
      quoted(unit));
  std::vector<double> details;
  double low = std::numeric_limits<double>::infinity();
  double high = 0;
  std::string plots;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    script += fmt::format("$line{} << END\n", i);
    for (const Point& point : lines[i].points) {
      details.push_back(point.x);
      const bool known = isFinite(point.y) && point.y.low > 0;
      const Interval shown =
          known ? point.y : Interval{point.y.middle, point.y.middle, point.y.middle};
      low = std::min(low, shown.low);
      high = std::max(high, shown.high);
      script += fmt::format("{} {} {} {}\n", point.x, shown.middle, shown.low, shown.high);
    }
    script += "END\n";
    // Colours repeat after seven lines; dashes and shapes do not.
    constexpr std::size_t kShapes = 13;
    plots += fmt::format(
        "{}$line{} using 1:2:3:4 with yerrorlines linecolor rgb '{}' linewidth 1.5 dashtype {} "
        "pointtype {} pointsize 0.6 title {}",
        i == 0 ? "" : ", ", i, colour(i), 1 + i / kColourCount, 1 + i % kShapes,
        quoted(lines[i].name));
  }
  std::sort(details.begin(), details.end());
  details.erase(std::unique(details.begin(), details.end()), details.end());
  for (int exponent = -3; exponent < 6; ++exponent) {
    const double decade = std::pow(10, exponent);
    script += fmt::format("set ytics add ({}, {}, {})\n", decade, 2 * decade, 5 * decade);
  }
  script += fmt::format("set xtics ({0})\nset xrange [{1}:{2}]\nset yrange [{3}:{4}]\nplot {5}\n",
                        fmt::join(details, ", "), details.front() / 1.3, details.back() * 1.3,
                        low / 1.1, high * 1.1, plots);
  constexpr int kPlotHeight = 280;
  return draw(title, script, kPlotHeight + kRowHeight * (2 + static_cast<int>(lines.size())));
}

std::string Charts::ratios(const std::string& title, const std::vector<Ratio>& ratios,
                           const std::string& axis, double threshold) {
  struct Look {
    const char* colour;
    Verdict verdict;
    int shape;
  };
  constexpr Look kLooks[] = {{"#D55E00", Verdict::kSlower, 10},
                             {"#0072B2", Verdict::kFaster, 8},
                             {"#009E73", Verdict::kSame, 7},
                             {"#999999", Verdict::kUndecided, 6}};
  constexpr const char* kNames[] = {"slower", "faster", "same", "undecided"};
  const double part = threshold / 100;
  double low = 1 - 1.2 * part;
  double high = 1 + 1.2 * part;
  std::string data[std::size(kLooks)];
  std::string labels;
  double y = 0;
  for (const Ratio& ratio : ratios) {
    labels += labelAt(ratio.label, y);
    y -= 1;
    const Interval shown =
        isFinite(ratio.ratio) && ratio.ratio.low > 0
            ? ratio.ratio
            : Interval{ratio.ratio.middle, ratio.ratio.middle, ratio.ratio.middle};
    low = std::min(low, shown.low);
    high = std::max(high, shown.high);
    for (std::size_t i = 0; i < std::size(kLooks); ++i) {
      if (kLooks[i].verdict == ratio.verdict) {
        data[i] += fmt::format("{} {} {} {}\n", shown.middle, y, shown.low, shown.high);
      }
    }
    y -= 1;
  }
  const double margin = 0.05 * (high - low);
  std::string script = fmt::format(
      "set yrange [{}:0.5]\nset xrange [{}:{}]\nunset ytics\nset lmargin 2\n"
      "set xlabel {}\nset xtics rotate by -45\n"
      "set object 1 rectangle from {},graph 0 to {},graph 1 behind fillcolor rgb '#999999' "
      "fillstyle solid 0.25 noborder\n"
      "set arrow 1 from 1,graph 0 to 1,graph 1 nohead linecolor rgb '{}'\n{}",
      y + 0.3, low - margin, high + margin, quoted(axis), 1 - part, 1 + part, kInk, labels);
  script += "set key below maxrows 1 left Left reverse\n";
  std::string plots;
  for (std::size_t i = 0; i < std::size(kLooks); ++i) {
    script += fmt::format("$verdict{} << END\n{}END\n", i, data[i].empty() ? "? ? ? ?\n" : data[i]);
    plots += fmt::format(
        "{}$verdict{} using 1:2:3:4 with xerrorbars linecolor rgb '{}' linewidth 1.5 pointtype {} "
        "title '{}'",
        i == 0 ? "" : ", ", i, kLooks[i].colour, kLooks[i].shape, kNames[i]);
  }
  constexpr int kSlantedTics = 30;
  return draw(title, script + "plot " + plots + '\n',
              kFrameHeight + kSlantedTics + kRowHeight * (3 + 2 * static_cast<int>(ratios.size())));
}

}  // namespace survey
