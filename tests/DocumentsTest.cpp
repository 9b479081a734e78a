// Manual page, docs/methods.md and completion name what the program takes, and nothing else.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>

#include "tests/support/ApplicationTest.h"
#include "tests/support/Shell.h"
#include "words/Attributes.h"

namespace {

using Documents = ApplicationTest;
using Words = std::set<std::string>;

/// The part of a document from one text up to another.
std::string part(const std::string& name, const std::string& from, const std::string& to) {
  std::ifstream file(SORVANTA_SOURCE_DIR "/" + name);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const auto start = text.find(from);
  EXPECT_NE(start, std::string::npos) << name << ": " << from;
  return text.substr(start, text.find(to, start + from.size()) - start);
}

/// The first group of every match.
Words matches(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  Words found;
  std::transform(std::sregex_iterator(text.begin(), text.end(), expression), std::sregex_iterator(),
                 std::inserter(found, found.end()),
                 [](const auto& match) { return match[1].str(); });
  return found;
}

/// What Bash offers after these words, a line each.
std::string completed(const std::string& words) {
  return shell("source " SORVANTA_SOURCE_DIR "/packaging/Sorvanta.bash; COMP_WORDS=(Sorvanta " +
               words +
               " ''); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _sorvanta; "
               "printf '%s\\n' ${COMPREPLY[@]}");
}

template <typename Table>
Words wordsOf(const Table& table) {
  Words words;
  for (const auto& row : table) {
    words.emplace(row.word);
  }
  return words;
}

TEST_F(Documents, NameEveryMethodAndPrimitive) {
  const Words methods = wordsOf(kDrawMethodWords);
  const std::string row = "\n\\| `(\\w+)` \\|";
  EXPECT_EQ(matches(part("docs/methods.md", "## Methods", "## What"), row), methods);
  EXPECT_EQ(matches(part("docs/methods.md", "## What", "\n## "), row), methods);
  const std::string calls = part("docs/methods.md", "| What a program calls |", "\"In a core");
  for (const DrawMethodWord& method : kDrawMethodWords) {
    EXPECT_NE(calls.find(std::string("| `") + method.word + "` | " + method.calls + " |\n"),
              std::string::npos)
        << method.word;
  }
  EXPECT_EQ(matches(part("packaging/Sorvanta.1", ".SH METHODS", ".SH"), "\n\\.TP\n\\.B (\\w+)\n"),
            methods);
  EXPECT_EQ(matches(completed("-r 1 -M"), "(.+)\n"), methods);
  const Words primitives = wordsOf(kPrimitiveWords);
  EXPECT_EQ(matches(part("packaging/Sorvanta.1", ".BR triStrip", ".TP"), "(?:\" |BR )(\\w+)"),
            primitives);
  EXPECT_EQ(matches(completed("-r 1 -p"), "(.+)\n"), primitives);
}

TEST_F(Documents, NameEveryOption) {
  // Of the numbered ones only the first; GLUT's own are offered, and taken out before ours.
  const Words options = matches(part("packaging/Sorvanta.1", ".SH OPTIONS", "GLUT"),
                                "\n\\.T[PQ]\n\\.\\w+ \\\\(-[a-zA-Z]+0?)");
  Words offered = matches(completed("-r 1"), "(-[a-zA-Z]+0?)\n");
  offered.erase("-display");
  offered.erase("-geometry");
  EXPECT_EQ(offered, options);
  for (const AttributeWord& row : kAttributeWords) {
    EXPECT_TRUE(options.contains(std::string(row.word) + (row.numbered ? "0" : ""))) << row.word;
  }
  for (const std::string& option : options) {
    testing::internal::CaptureStdout();
    parse({option, "1", "1"});
    EXPECT_EQ(testing::internal::GetCapturedStdout().find(option), std::string::npos) << option;
  }
}

}  // namespace
