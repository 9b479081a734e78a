#include "survey/plan/Words.h"

#include <algorithm>
#include <cctype>
#include <numeric>

#include <fmt/format.h>

namespace survey {
namespace {

bool sameLetter(char a, char b) {
  const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  return lower(a) == lower(b);
}

/// Levenshtein's distance, one row at a time; capitals count as small letters.
std::size_t editsBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (sameLetter(a[i], b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view nearestWord(std::string_view word,
                             const std::vector<std::string_view>& candidates) {
  return *std::min_element(candidates.begin(), candidates.end(),
                           [&](std::string_view a, std::string_view b) {
                             return editsBetween(word, a) < editsBetween(word, b);
                           });
}

void throwUnknownWord(std::string_view word, std::string_view what,
                      const std::vector<std::string_view>& candidates) {
  throw Unusable(
      fmt::format("'{}' is no {}; did you mean '{}'?", word, what, nearestWord(word, candidates)));
}

std::vector<std::string> split(std::string_view list) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    parts.emplace_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

}  // namespace survey
