#include "survey/plan/Environment.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <string_view>

#include <fmt/format.h>
#include <wordexp.h>

#include "survey/plan/Words.h"

namespace survey {
namespace {

bool isAssignment(std::string_view word) {
  const std::string_view name = word.substr(0, word.find('='));
  return name.size() < word.size() && !name.empty() &&
         std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
         std::all_of(name.begin(), name.end(), [](unsigned char letter) {
           return std::isalnum(letter) != 0 || letter == '_';
         });
}

const char* whyNot(int error) {
  switch (error) {
    case WRDE_BADVAL:
      return "a variable in it is not set";
    case WRDE_CMDSUB:
      return "commands are not run";
    case WRDE_SYNTAX:
      return "a quote or bracket is not closed";
    default:
      return "put quotes around | & ; < > ( ) { } and line ends";
  }
}

}  // namespace

std::vector<std::string> assignmentsIn(const std::string& words, const std::string& option) {
  wordexp_t expanded{};
  const int error = wordexp(words.c_str(), &expanded, WRDE_NOCMD | WRDE_UNDEF);
  const std::unique_ptr<wordexp_t, void (*)(wordexp_t*)> owner(&expanded, wordfree);
  if (error != 0) {
    throw Unusable(fmt::format("{} '{}' cannot be understood: {}", option, words, whyNot(error)));
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
