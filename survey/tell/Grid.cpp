#include "survey/tell/Grid.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

namespace survey {
namespace {

using Widths = std::vector<std::size_t>;

std::size_t lettersOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

/// 0 for a column that is left out.
Widths widthsOf(const Grid& grid) {
  Widths widths(grid.onTheRight.size(), 0);
  for (const std::size_t column : usedColumns(grid)) {
    for (const Section& section : grid.sections) {
      for (const Row& row : section.rows) {
        widths[column] = std::max(widths[column], lettersOf(row[column]));
      }
    }
  }
  return widths;
}

std::string lineOf(const Row& row, const Widths& widths, const std::vector<bool>& onTheRight) {
  std::string line;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    if (widths[column] > 0) {
      const std::string gap(widths[column] - lettersOf(row[column]), ' ');
      line += (onTheRight[column] ? gap + row[column] : row[column] + gap) + "  ";
    }
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string styled(const std::string& line, std::string_view style) {
  return style.empty() ? line + '\n' : fmt::format("\033[{}m{}\033[0m\n", style, line);
}

std::string_view styleOf(const Section& section, std::size_t row) {
  if (row == 0) {
    return "2";
  }
  switch (section.tints[row]) {
    case Tint::kGood:
      return "32";
    case Tint::kBad:
      return "31";
    case Tint::kPlain:
      break;
  }
  return "";
}

std::string markdownLine(const Row& row, const std::vector<std::size_t>& columns) {
  std::string line;
  for (const std::size_t column : columns) {
    line += "| " + inMarkdown(row[column]) + ' ';
  }
  return line + "|\n";
}

}  // namespace

std::string Notes::numberOf(const std::string& remark) {
  if (remark.empty()) {
    return "";
  }
  const auto place = std::find(remarks_.begin(), remarks_.end(), remark);
  const auto index = place - remarks_.begin();
  if (place == remarks_.end()) {
    remarks_.push_back(remark);
  }
  return fmt::format("[{}]", index + 1);
}

std::vector<std::size_t> usedColumns(const Grid& grid) {
  std::vector<std::size_t> columns;
  for (std::size_t column = 0; column < grid.onTheRight.size(); ++column) {
    if (std::any_of(grid.sections.begin(), grid.sections.end(), [=](const Section& section) {
          return std::any_of(section.rows.begin() + 1, section.rows.end(),
                             [=](const Row& row) { return !row[column].empty(); });
        })) {
      columns.push_back(column);
    }
  }
  return columns;
}

std::string asText(const Grid& grid, bool colours) {
  const Widths widths = widthsOf(grid);
  std::string text;
  for (const Section& section : grid.sections) {
    text += (text.empty() ? "" : "\n") + styled(section.title, colours ? "1" : "");
    for (std::size_t i = 0; i < section.rows.size(); ++i) {
      text += styled(lineOf(section.rows[i], widths, grid.onTheRight),
                     colours ? styleOf(section, i) : "");
    }
  }
  text += grid.notes.all().empty() ? "" : "\n";
  for (std::size_t i = 0; i < grid.notes.all().size(); ++i) {
    text += fmt::format("[{}] {}\n", i + 1, grid.notes.all()[i]);
  }
  return text;
}

std::string asMarkdown(const Grid& grid) {
  const std::vector<std::size_t> columns = usedColumns(grid);
  Row rule;
  std::transform(grid.onTheRight.begin(), grid.onTheRight.end(), std::back_inserter(rule),
                 [](bool right) { return right ? "---:" : "---"; });
  std::string text;
  for (const Section& section : grid.sections) {
    text += fmt::format("\n**{}**\n\n{}{}", inMarkdown(section.title),
                        markdownLine(section.rows.front(), columns), markdownLine(rule, columns));
    for (std::size_t i = 1; i < section.rows.size(); ++i) {
      text += markdownLine(section.rows[i], columns);
    }
  }
  text += grid.notes.all().empty() ? "" : "\n";
  for (std::size_t i = 0; i < grid.notes.all().size(); ++i) {
    text += fmt::format("- [{}] {}\n", i + 1, inMarkdown(grid.notes.all()[i]));
  }
  return text;
}

std::string inMarkdown(std::string_view text) {
  std::string markdown;
  for (const char character : text) {
    if (character == '|') {
      markdown += "&#124;";  // a backslash would itself be escaped by one before it
    } else if (character == '<') {
      markdown += "&lt;";
    } else {
      // A link or an image would begin: ![x](address).
      markdown += character == '(' && markdown.ends_with(']') ? "\\" : "";
      markdown += character;
    }
  }
  return markdown;
}

}  // namespace survey
