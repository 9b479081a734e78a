#include "survey/data/Words.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <regex>

#include <fmt/format.h>
#include <wordexp.h>

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

bool isAssignment(std::string_view word) {
  const std::string_view name = word.substr(0, word.find('='));
  return name.size() < word.size() && !name.empty() &&
         std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
         std::all_of(name.begin(), name.end(), [](unsigned char letter) {
           return std::isalnum(letter) != 0 || letter == '_';
         });
}

/// The first variable in the words that is not set, as "$NAME"; empty where none is seen.
std::string unsetVariable(const std::string& words) {
  static const std::regex variable(R"(\$\{?([A-Za-z_][A-Za-z_0-9]*))");
  for (std::sregex_iterator at(words.begin(), words.end(), variable), end; at != end; ++at) {
    if (std::getenv(at->str(1).c_str()) == nullptr) {
      return '$' + at->str(1);
    }
  }
  return "";
}

std::string whyNot(int error, const std::string& words) {
  switch (error) {
    case WRDE_BADVAL: {
      const std::string name = unsetVariable(words);
      return (name.empty() ? "a variable in it" : name) + " is not set";
    }
    case WRDE_CMDSUB:
      return "commands are not run";
    case WRDE_SYNTAX:
      return "a quote or bracket is not closed";
    default:
      return "put quotes around | & ; < > ( ) { } and line ends";
  }
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

std::vector<std::string> assignmentsIn(const std::string& words, const std::string& option) {
  wordexp_t expanded{};
  const int error = wordexp(words.c_str(), &expanded, WRDE_NOCMD | WRDE_UNDEF);
  const std::unique_ptr<wordexp_t, void (*)(wordexp_t*)> owner(&expanded, wordfree);
  if (error != 0) {
    throw Unusable(
        fmt::format("{} '{}' cannot be understood: {}", option, words, whyNot(error, words)));
  }
  std::vector<std::string> assignments(expanded.we_wordv, expanded.we_wordv + expanded.we_wordc);
  for (const std::string& word : assignments) {
    if (!isAssignment(word)) {
      throw Unusable(fmt::format("{}: '{}' is no assignment; write VARIABLE=value", option, word));
    }
  }
  return assignments;
}

}  // namespace survey
