#include "survey/tell/Html.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/process/ForeignText.h"

namespace survey {
namespace {

std::string rowOf(const Row& row, const std::vector<std::size_t>& columns, const Grid& grid,
                  std::string_view element, std::string_view rowClass) {
  std::string html = rowClass.empty() ? "<tr>" : fmt::format("<tr class=\"{}\">", rowClass);
  for (const std::size_t column : columns) {
    html += fmt::format("<{0}{1}>{2}</{0}>", element,
                        grid.onTheRight[column] ? " class=\"number\"" : "", escaped(row[column]));
  }
  return html + "</tr>\n";
}

std::string_view classOf(Tint tint) {
  switch (tint) {
    case Tint::kGood:
      return "good";
    case Tint::kBad:
      return "bad";
    case Tint::kPlain:
      break;
  }
  return "";
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string html;
  for (const char character : harmless(text, LineEnds::kKept)) {
    switch (character) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

std::string htmlOf(const Grid& grid) {
  const std::vector<std::size_t> columns = usedColumns(grid);
  std::string html;
  for (const Section& section : grid.sections) {
    html +=
        fmt::format("<div class=\"wide\"><table>\n<caption>{}</caption>\n<thead>{}</thead>\n",
                    escaped(section.title), rowOf(section.rows.front(), columns, grid, "th", ""));
    html += "<tbody>\n";
    for (std::size_t i = 1; i < section.rows.size(); ++i) {
      html += rowOf(section.rows[i], columns, grid, "td", classOf(section.tints[i]));
    }
    html += "</tbody></table></div>\n";
  }
  if (!grid.notes.all().empty()) {
    html += "<ul class=\"notes\">\n";
    for (std::size_t i = 0; i < grid.notes.all().size(); ++i) {
      html += fmt::format("<li>[{}] {}</li>\n", i + 1, escaped(grid.notes.all()[i]));
    }
    html += "</ul>\n";
  }
  return html;
}

}  // namespace survey
