#include "survey/tell/Html.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

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
  // Through JSON, which replaces what is no UTF-8.
  const std::string sound =
      nlohmann::json::parse(nlohmann::json(std::string(text))
                                .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace))
          .get<std::string>();
  std::string html;
  for (const char character : sound) {
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
        // What controls terminals has no place in a page.
        html += static_cast<unsigned char>(character) < ' ' && character != '\n' ? ' ' : character;
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
