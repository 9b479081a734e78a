#include "survey/data/Cells.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>

#include <fmt/format.h>

#include "survey/data/Words.h"
#include "words/Attributes.h"
#include "words/Detail.h"
#include "words/DrawMethods.h"
#include "words/Primitives.h"

namespace survey {
namespace {

template <typename Rows>
std::vector<std::string_view> wordsOf(const Rows& rows) {
  std::vector<std::string_view> words;
  words.reserve(rows.size());
  for (const auto& row : rows) {
    words.emplace_back(row.word);
  }
  return words;
}

std::vector<std::string_view> attributeWords() {
  static const std::vector<std::string> words = [] {
    std::vector<std::string> all;
    for (const AttributeWord& row : kAttributeWords) {
      for (int number = 0; number < (row.numbered ? 8 : 1); ++number) {
        all.push_back(std::string(row.word) + (row.numbered ? std::to_string(number) : ""));
      }
    }
    return all;
  }();
  return {words.begin(), words.end()};
}

void addOnce(std::vector<std::string>& words, std::string word) {
  if (std::find(words.begin(), words.end(), word) == words.end()) {
    words.push_back(std::move(word));
  }
}

/// The list's words in its order, each once.
std::vector<std::string> chosen(const std::string& list, std::string_view what,
                                const std::vector<std::string_view>& known) {
  if (list == "all") {
    return {known.begin(), known.end()};
  }
  std::vector<std::string> words;
  for (std::string& word : split(list)) {
    if (std::find(known.begin(), known.end(), word) == known.end()) {
      throwUnknownWord(word, what, known);
    }
    addOnce(words, std::move(word));
  }
  return words;
}

/// What a group of methods is called, and who is in it.
struct MethodGroup {
  const char* word;
  bool (*has)(const DrawMethodWord& row);
};
constexpr MethodGroup kMethodGroups[] = {
    {"ten", [](const DrawMethodWord& row) { return amongTheTen(row.method); }},
    {"today", [](const DrawMethodWord& row) { return !amongTheTen(row.method); }},
    {"static", [](const DrawMethodWord& row) { return row.use == VertexUse::kKept; }},
    {"stream", [](const DrawMethodWord& row) { return row.use == VertexUse::kStreamed; }},
    {"core", [](const DrawMethodWord& row) { return row.inCoreProfile; }},
};

std::vector<std::string_view> methodsAndGroups() {
  std::vector<std::string_view> words = wordsOf(kDrawMethodWords);
  for (const MethodGroup& group : kMethodGroups) {
    words.emplace_back(group.word);
  }
  return words;
}

/// Each method once, those of a group where its word stands.
std::vector<std::string> methodsIn(const std::vector<std::string>& words) {
  std::vector<std::string> methods;
  for (const std::string& word : words) {
    const auto* const group =
        std::find_if(std::begin(kMethodGroups), std::end(kMethodGroups),
                     [&](const MethodGroup& candidate) { return candidate.word == word; });
    for (const DrawMethodWord& row : kDrawMethodWords) {
      if (group == std::end(kMethodGroups) ? row.word == word : group->has(row)) {
        addOnce(methods, row.word);
      }
    }
  }
  return methods;
}

std::vector<unsigned int> detailsOf(const std::string& list) {
  std::vector<unsigned int> details;
  for (const std::string& text : split(list)) {
    unsigned int detail = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, detail);
    if (error != std::errc() || rest != end || detail < 1 || detail > kMostDetail) {
      throw Unusable(
          fmt::format("'{}' is no detail; give whole numbers from 1 to {}", text, kMostDetail));
    }
    if (std::find(details.begin(), details.end(), detail) == details.end()) {
      details.push_back(detail);
    }
  }
  return details;
}

/// The words in the order of the table, each once, so that equal sets have equal names.
std::string attributesOf(const std::string& options) {
  const std::vector<std::string_view> known = attributeWords();
  std::vector<std::string> given;
  std::istringstream words(options);
  for (std::string word; words >> word;) {
    if (!attributeNamed(word)) {
      throwUnknownWord(word, "attribute", known);
    }
    given.push_back(word);
  }
  std::string ordered;
  for (const std::string_view word : known) {
    if (std::find(given.begin(), given.end(), word) != given.end()) {
      ordered.append(ordered.empty() ? "" : " ").append(word);
    }
  }
  return ordered;
}

}  // namespace

std::string nameOf(const Cell& cell) {
  std::string name = fmt::format("{}/{}/{}", cell.method, cell.primitive, cell.detail);
  if (!cell.with.empty()) {
    name += '/';
    std::copy_if(cell.with.begin(), cell.with.end(), std::back_inserter(name),
                 [](char character) { return character != ' '; });
  }
  return name;
}

std::vector<Cell> cellsOf(const CellLists& lists) {
  std::vector<std::string> sets;
  for (const std::string& options : lists.with) {
    addOnce(sets, attributesOf(options));
  }
  const auto methods = methodsIn(chosen(lists.methods, "method", methodsAndGroups()));
  const auto primitives = chosen(lists.primitives, "primitive", wordsOf(kPrimitiveWords));
  std::vector<Cell> cells;
  for (const unsigned int detail : detailsOf(lists.details)) {
    for (const std::string& primitive : primitives) {
      for (const std::string& with : sets) {
        for (const std::string& method : methods) {
          cells.push_back({method, primitive, detail, with});
        }
      }
    }
  }
  return cells;
}

}  // namespace survey
