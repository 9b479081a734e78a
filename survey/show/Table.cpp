#include "survey/show/Table.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "survey/show/Answer.h"
#include "survey/show/Numbers.h"

namespace survey {
namespace {

constexpr double kMillion = 1e6;
constexpr std::size_t kColumns = 12;
using Row = std::array<std::string, kColumns>;

/// The words that columns of numbers do without stand on the left.
constexpr std::array<bool, kColumns> kOnTheRight = {false, false, true, true,  true,  true,
                                                    true,  true,  true, false, false, false};

struct Section {
  std::string title;
  std::vector<Row> rows;  ///< the headings first
};

/// Numbers for remarks: the same remark has the same number.
class Notes {
 public:
  std::string numberOf(const std::string& remark) {
    if (remark.empty()) {
      return "";
    }
    const auto place = std::find(remarks.begin(), remarks.end(), remark);
    const auto index = place - remarks.begin();
    if (place == remarks.end()) {
      remarks.push_back(remark);
    }
    return fmt::format("[{}]", index + 1);
  }
  const std::vector<std::string>& all() const { return remarks; }

 private:
  std::vector<std::string> remarks;
};

std::string_view inWords(Support support) {
  switch (support) {
    case Support::kItself:
      return "itself";
    case Support::kStandIn:
      return "stand-in";
    case Support::kOther:
      return "other";
    case Support::kRefused:
      return "refused";
  }
  return "";
}

Row rowOf(const Record& record, const CellFigure& figure, bool best, bool alone, Notes& notes) {
  const CellRecord& cell = record.cells[figure.cell];
  return {figure.leads ? (alone ? ">" : "=") : "",
          cell.cell.method,
          threeDigits(figure.rate.middle / kMillion),
          spreadOf(figure.rate),
          fmt::format("{:.3f}", figure.ratio.middle),
          best ? "" : spreadOf(figure.ratio),
          fmt::format("{:.0f}", cell.answer->verticesPerCall),
          threeDigits(figure.nanosecondsPerCall),
          figure.gpuShare ? fmt::format("{:.0f} %", 100 * *figure.gpuShare) : "",
          std::string(inWords(cell.answer->support)),
          cell.answer->inCoreProfile ? "yes" : "no",
          notes.numberOf(remarkOn(record, figure.cell, true))};
}

Row rowWithoutFigure(const Record& record, std::size_t index, Notes& notes) {
  const CellRecord& cell = record.cells[index];
  Row row{"", cell.cell.method, "-"};
  row[kColumns - 3] = cell.answer ? inWords(cell.answer->support) : "";
  row[kColumns - 1] = notes.numberOf(remarkOn(record, index, false));
  return row;
}

Section sectionOf(const Record& record, const Group& group, Notes& notes) {
  Section section;
  section.title = fmt::format("Detail {}, {}, {}", group.detail, group.primitive,
                              attributesInWords(group.sent));
  section.rows.push_back({"", "method", unitOf(group.primitive), "±", "of best", "±",
                          "vertices/call", "ns/call", "GPU", "runs as", "core", "note"});
  const bool alone = std::count_if(group.ranking.begin(), group.ranking.end(),
                                   [](const CellFigure& figure) { return figure.leads; }) == 1;
  for (const CellFigure& figure : group.ranking) {
    section.rows.push_back(rowOf(record, figure, &figure == &group.ranking.front(), alone, notes));
  }
  for (const std::size_t cell : group.without) {
    section.rows.push_back(rowWithoutFigure(record, cell, notes));
  }
  return section;
}

std::size_t lettersOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

using Widths = std::array<std::size_t, kColumns>;

/// 0 for a column that has nothing but its heading, which is left out.
Widths widthsOf(const std::vector<Section>& sections) {
  Widths widths{};
  for (std::size_t column = 0; column < kColumns; ++column) {
    std::size_t ofContents = 0;
    for (const Section& section : sections) {
      widths[column] = std::max(widths[column], lettersOf(section.rows[0][column]));
      for (std::size_t i = 1; i < section.rows.size(); ++i) {
        ofContents = std::max(ofContents, lettersOf(section.rows[i][column]));
      }
    }
    widths[column] = ofContents == 0 ? 0 : std::max(widths[column], ofContents);
  }
  return widths;
}

std::string lineOf(const Row& row, const Widths& widths) {
  std::string line;
  for (std::size_t column = 0; column < kColumns; ++column) {
    if (widths[column] > 0) {
      const std::string gap(widths[column] - lettersOf(row[column]), ' ');
      line += (kOnTheRight[column] ? gap + row[column] : row[column] + gap) + "  ";
    }
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string styled(const std::string& line, std::string_view style, bool colours) {
  return colours ? fmt::format("\033[{}m{}\033[0m\n", style, line) : line + "\n";
}

std::string markdownLine(const Row& row, const Widths& widths) {
  std::string line;
  for (std::size_t column = 0; column < kColumns; ++column) {
    line += widths[column] > 0 ? "| " + row[column] + ' ' : "";
  }
  return line + "|\n";
}

std::vector<Section> sectionsOf(const Record& record, const Figures& figures, Notes& notes) {
  std::vector<Section> sections;
  for (const Group& group : figures.groups) {
    sections.push_back(sectionOf(record, group, notes));
  }
  return sections;
}

}  // namespace

std::string tableOf(const Record& record, const Figures& figures, bool colours) {
  Notes notes;
  const std::vector<Section> sections = sectionsOf(record, figures, notes);
  const Widths widths = widthsOf(sections);
  std::string text;
  for (const Section& section : sections) {
    text += (text.empty() ? "" : "\n") + styled(section.title, "1", colours);
    for (std::size_t i = 0; i < section.rows.size(); ++i) {
      const std::string line = lineOf(section.rows[i], widths);
      const bool leads = !section.rows[i][0].empty();
      text += styled(line, i == 0 ? "2" : "32", colours && (i == 0 || leads));
    }
  }
  for (const std::string& note : notes.all()) {
    text += fmt::format("{}{} {}\n", &note == &notes.all().front() ? "\n" : "",
                        notes.numberOf(note), note);
  }
  return text;
}

std::string markdownOf(const Record& record, const Figures& figures) {
  Notes notes;
  const std::vector<Section> sections = sectionsOf(record, figures, notes);
  const Widths widths = widthsOf(sections);
  Row rule;
  std::transform(kOnTheRight.begin(), kOnTheRight.end(), rule.begin(),
                 [](bool right) { return right ? "---:" : "---"; });
  std::string text = fmt::format("{}\n\n{}\n", answerOf(record, figures), sourceOf(record));
  for (const Section& section : sections) {
    text += fmt::format("\n**{}**\n\n{}{}", section.title, markdownLine(section.rows[0], widths),
                        markdownLine(rule, widths));
    for (std::size_t i = 1; i < section.rows.size(); ++i) {
      text += markdownLine(section.rows[i], widths);
    }
  }
  text += notes.all().empty() ? "" : "\n";
  for (const std::string& note : notes.all()) {
    text += fmt::format("- {} {}\n", notes.numberOf(note), note);
  }
  return text;
}

}  // namespace survey
