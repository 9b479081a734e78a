#include "survey/tell/Charts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

#include <fmt/format.h>

#include "survey/tell/Html.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

/// A telephone's, so that letters stay readable there; wider pages show several side by side.
constexpr double kWidth = 400;
constexpr double kMargin = 16;  ///< for half of a tick's number
constexpr double kRow = 16;

constexpr const char* kColours[] = {"#0072B2", "#E69F00", "#009E73", "#D55E00",
                                    "#56B4E9", "#CC79A7", "#999999"};
constexpr const char* kDashes[] = {"none", "6 3", "2 2"};

const char* colour(std::size_t index) {
  return kColours[index % std::size(kColours)];
}
/// Colours repeat after seven lines; dashes do not.
const char* dash(std::size_t index) {
  return kDashes[index / std::size(kColours) % std::size(kDashes)];
}

bool isKnown(const Interval& interval) {
  return std::isfinite(interval.low) && std::isfinite(interval.high);
}

struct Scale {
  double low;
  double high;
  double from;  ///< where `low` is drawn
  double to;
  bool logarithmic = false;

  double operator()(double value) const {
    const auto place = [this](double v) { return logarithmic ? std::log(v) : v; };
    return from + (to - from) * (place(value) - place(low)) / (place(high) - place(low));
  }
};

/// Round numbers between the ends, of which there is room for some seven.
std::vector<double> ticksOf(const Scale& scale) {
  std::vector<double> ticks;
  if (scale.logarithmic) {
    const auto exponentOf = [](double value) {
      return static_cast<int>(std::floor(std::log10(value)));
    };
    for (int exponent = exponentOf(scale.low); exponent <= exponentOf(scale.high); ++exponent) {
      for (const double step : {1, 2, 5}) {
        ticks.push_back(step * std::pow(10, exponent));
      }
    }
  } else {
    constexpr double kMost = 7;
    double step = std::pow(10, std::floor(std::log10((scale.high - scale.low) / kMost)));
    for (const double factor : {2.0, 2.5, 2.0}) {
      step *= (scale.high - scale.low) / step > kMost ? factor : 1;
    }
    const auto last = std::lround(scale.high / step);
    for (auto i = std::lround(scale.low / step); i <= last; ++i) {
      ticks.push_back(static_cast<double>(i) * step);
    }
  }
  std::erase_if(ticks, [&](double tick) { return tick < scale.low || tick > scale.high; });
  return ticks;
}

std::string textAt(double x, double y, const std::string& text, const char* anchor = "start") {
  return fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor,
                     escaped(text));
}

std::string lineFrom(double x0, double y0, double x1, double y1, const char* attributes = "") {
  return fmt::format("<line x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\" {}/>\n", x0, y0,
                     x1, y1, attributes);
}

std::string box(double x, double y, double width, double height, const std::string& attributes) {
  return fmt::format("<rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\" {}/>\n", x,
                     y, width, height, attributes);
}

constexpr const char* kGrid = R"(stroke="#999" stroke-opacity=".5" stroke-dasharray="2 3")";
constexpr const char* kInk = R"(stroke="currentColor")";

/// Numbers below a chart that ends at `bottom`, lines up from them, and what they are.
std::string horizontalAxis(const Scale& x, const std::vector<double>& ticks, double bottom,
                           const std::string& what) {
  std::string svg;
  for (const double tick : ticks) {
    svg += lineFrom(x(tick), 0, x(tick), bottom, kGrid);
    svg += textAt(x(tick), bottom + kRow, fmt::format("{:g}", tick), "middle");
  }
  return svg + lineFrom(x.from, bottom, x.to, bottom, kInk) +
         textAt((x.from + x.to) / 2, bottom + 2 * kRow, what, "middle");
}

/// An interval along x, in the colour of what is around it.
std::string whisker(double low, double high, double y) {
  constexpr double kCap = 3;
  return lineFrom(low, y, high, y) + lineFrom(low, y - kCap, low, y + kCap) +
         lineFrom(high, y - kCap, high, y + kCap);
}

std::string element(const std::string& title, double height, const std::string& content) {
  return fmt::format(
      "<svg role=\"img\" viewBox=\"0 0 {0:g} {1:g}\" font-size=\"12\" fill=\"currentColor\">\n"
      "<title>{2}</title>\n{3}</svg>\n",
      kWidth, height, escaped(title), content);
}

/// What a verdict looks like, at a place that is translated to.
struct Look {
  Verdict verdict;
  const char* colour;
  const char* shape;
};
constexpr Look kLooks[] = {{Verdict::kSlower, "#D55E00", R"(<path d="M-5-4H5L0 5Z"/>)"},
                           {Verdict::kFaster, "#0072B2", R"(<path d="M-5 4H5L0-5Z"/>)"},
                           {Verdict::kSame, "#009E73", R"(<circle r="4"/>)"},
                           {Verdict::kUndecided, "#999999", R"(<circle r="4" fill="none"/>)"}};

std::string marked(const Look& look, double x, double y) {
  return fmt::format("<g transform=\"translate({:.1f} {:.1f})\">{}</g>\n", x, y, look.shape);
}

}  // namespace

std::string barChart(const std::string& title, const std::vector<Bars>& bars,
                     const std::vector<std::string>& names, const std::string& unit) {
  double most = 0;
  for (const Bars& group : bars) {
    for (const auto& value : group.values) {
      most = value ? std::max({most, value->middle, isKnown(*value) ? value->high : 0}) : most;
    }
  }
  const Scale x{0, most, kMargin, kWidth - kMargin};
  std::string drawn;
  double y = 0;
  for (const Bars& group : bars) {
    drawn += textAt(x.from, y += kRow, group.label);
    y += kRow / 4;
    for (std::size_t i = 0; i < names.size(); ++i, y += kRow) {
      if (const auto& value = group.values[i]) {
        drawn += box(x.from, y, x(value->middle) - x.from, kRow - 4,
                     fmt::format(R"(fill="{}"{})", colour(i),
                                 isKnown(*value) ? "" : R"( fill-opacity=".4")"));
        drawn += isKnown(*value) ? fmt::format("<g {}>{}</g>\n", kInk,
                                               whisker(x(std::max(0.0, value->low)), x(value->high),
                                                       y + kRow / 2 - 2))
                                 : "";
      }
    }
  }
  std::string svg = horizontalAxis(x, ticksOf(x), y, unit) + drawn;
  y += 2 * kRow;
  for (std::size_t i = 0; i < names.size() && names.size() > 1; ++i) {
    y += kRow;
    svg += box(x.from, y - 10, 10, 10, fmt::format(R"(fill="{}")", colour(i)));
    svg += textAt(x.from + kRow, y, names[i]);
  }
  return element(title, y + kRow / 2, svg);
}

std::string lineChart(const std::string& title, const std::vector<Line>& lines,
                      const std::string& unit) {
  constexpr double kHeight = 280;
  constexpr double kNumbers = 44;
  std::set<double> details;
  double low = lines.front().points.front().y.middle;
  double high = low;
  for (const Line& line : lines) {
    for (const Line::Point& point : line.points) {
      details.insert(point.x);
      low = std::min(low, point.y.middle);
      high = std::max(high, point.y.middle);
    }
  }
  const Scale x{*details.begin() / 1.2, *details.rbegin() * 1.2, kNumbers, kWidth - kMargin, true};
  const Scale y{low / 1.2, high * 1.2, kHeight, kRow, true};
  std::string svg = horizontalAxis(x, {details.begin(), details.end()}, kHeight, "detail");
  for (const double tick : ticksOf(y)) {
    svg += lineFrom(x.from, y(tick), x.to, y(tick), kGrid);
    svg += textAt(x.from - 4, y(tick) + 4, fmt::format("{:g}", tick), "end");
  }
  svg += lineFrom(x.from, y.from, x.from, 0, kInk) + textAt(0, 10, unit);
  double key = kHeight + 2 * kRow;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string path;
    std::string points;
    for (const auto& [detail, rate] : lines[i].points) {
      path += fmt::format("{}{:.1f} {:.1f}", path.empty() ? "M" : "L", x(detail), y(rate.middle));
      points +=
          fmt::format(R"(<circle cx="{:.1f}" cy="{:.1f}" r="2.5"/>)", x(detail), y(rate.middle));
      if (isKnown(rate) && rate.low > y.low && rate.high < y.high) {
        points += lineFrom(x(detail), y(rate.low), x(detail), y(rate.high));
      }
    }
    key += kRow;
    svg += fmt::format(
        R"(<g stroke="{0}" fill="{0}"><path d="{1}" fill="none" stroke-width="1.5" )"
        "stroke-dasharray=\"{2}\"/>{3}{4}</g>\n",
        colour(i), path, dash(i), points,
        lineFrom(x.from, key - 4, x.from + 2 * kRow, key - 4,
                 fmt::format(R"(stroke-width="2" stroke-dasharray="{}")", dash(i)).c_str()));
    svg += textAt(x.from + 2.5 * kRow, key, lines[i].name);
  }
  return element(title, key + kRow / 2, svg);
}

std::string ratioChart(const std::string& title, const std::vector<Ratio>& ratios,
                       const std::string& axis, double threshold) {
  const double part = threshold / 100;
  double low = 1 - 1.2 * part;
  double high = 1 + 1.2 * part;
  for (const Ratio& ratio : ratios) {
    low = std::min({low, ratio.ratio.middle, isKnown(ratio.ratio) ? ratio.ratio.low : low});
    high = std::max({high, ratio.ratio.middle, isKnown(ratio.ratio) ? ratio.ratio.high : high});
  }
  const double air = 0.03 * (high - low);
  const Scale x{low - air, high + air, kMargin, kWidth - kMargin};
  const double bottom = (2 * static_cast<double>(ratios.size()) + 0.5) * kRow;
  std::string svg =
      box(x(1 - part), 0, x(1 + part) - x(1 - part), bottom, R"(fill="#999" fill-opacity=".25")") +
      horizontalAxis(x, ticksOf(x), bottom, axis) + lineFrom(x(1), 0, x(1), bottom, kInk);
  double y = 0;
  for (const Ratio& ratio : ratios) {
    svg += textAt(x.from, y + 0.8 * kRow, ratio.label);
    y += 2 * kRow;
  }
  double key = x.from;
  for (const Look& look : kLooks) {
    const std::string name(inWords(look.verdict));
    std::string marks;
    y = 1.5 * kRow;
    for (const Ratio& ratio : ratios) {
      if (ratio.verdict == look.verdict) {
        marks += isKnown(ratio.ratio) ? whisker(x(ratio.ratio.low), x(ratio.ratio.high), y) : "";
        marks += marked(look, x(ratio.ratio.middle), y);
      }
      y += 2 * kRow;
    }
    const double below = bottom + 3 * kRow;
    svg += fmt::format(
        "<g class=\"{0}\" stroke=\"{1}\" fill=\"{1}\" stroke-width=\"1.5\">{2}{3}</g>\n", name,
        look.colour, marks, marked(look, key + 6, below - 4));
    svg += textAt(key + kRow, below, name);
    key += kWidth / 4 - 4;
  }
  return element(title, bottom + 3.5 * kRow, svg);
}

}  // namespace survey
