#include "survey/tell/Numbers.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "survey/data/Cells.h"
#include "words/Primitives.h"

namespace survey {

std::string threeDigits(double value) {
  if (!(value > 0) || !std::isfinite(value)) {
    return "?";
  }
  const int magnitude = static_cast<int>(std::floor(std::log10(value)));
  const double step = std::pow(10, magnitude - 2);
  const double rounded = std::round(value / step) * step;
  // 9.996 has become 10.0
  const int decimals = 2 - static_cast<int>(std::floor(std::log10(rounded * (1 + 1e-12))));
  return fmt::format("{:.{}f}", rounded, std::max(decimals, 0));
}

std::string spreadOf(const Interval& interval) {
  const double percent = kPercent * interval.halfWidth() / interval.middle;
  if (!std::isfinite(percent)) {
    return "?";
  }
  constexpr double kManyPercent = 10;
  constexpr double kTooMany = 99.5;
  if (percent >= kTooMany) {
    return "> 99 %";
  }
  return percent < kManyPercent ? fmt::format("{:.1f} %", percent)
                                : fmt::format("{:.0f} %", percent);
}

std::string unitOf(const std::string& primitive) {
  return countsQuads(primitive) ? "MQuad/s" : "MTri/s";
}

std::string attributesInWords(const std::string& sent) {
  return sent.empty() ? "vertices alone" : "with " + sent;
}

std::string groupInWords(unsigned int detail, const std::string& primitive,
                         const std::string& sent) {
  return fmt::format("Detail {}, {}, {}", detail, primitive, attributesInWords(sent));
}

std::string cellsInWords(std::size_t count) {
  return count == 1 ? "1 cell" : fmt::format("{} cells", count);
}

std::string fileInWords(const Library& library) {
  constexpr std::size_t kDigitsOfBuildId = 8;
  const bool isBuildId = library.build.find(' ') == std::string::npos;
  return library.build.empty()
             ? library.path
             : fmt::format(
                   "{} ({})", library.path,
                   library.build.substr(0, isBuildId ? kDigitsOfBuildId : std::string::npos));
}

std::string listInWords(const std::vector<std::string>& names) {
  if (names.size() == 1) {
    return names.front();
  }
  return fmt::format("{} and {}", fmt::join(names.begin(), names.end() - 1, ", "), names.back());
}

std::string namesOf(const std::vector<Cell>& cells, const std::vector<std::size_t>& indices) {
  std::vector<std::string> names;
  names.reserve(indices.size());
  for (const std::size_t index : indices) {
    names.push_back(nameOf(cells[index]));
  }
  return fmt::format("{}", fmt::join(names, ", "));
}

}  // namespace survey
