#include "survey/show/Table.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "survey/show/Answer.h"
#include "survey/show/Numbers.h"

namespace survey {
namespace {

constexpr double kMillion = 1e6;
/// The words that columns of numbers do without stand on the left.
const std::vector<bool> kOnTheRight = {false, false, true, true,  true,  true,
                                       true,  true,  true, false, false, false};

std::string_view inWords(RunsAs support) {
  switch (support) {
    case RunsAs::kItself:
      return "itself";
    case RunsAs::kStandIn:
      return "stand-in";
    case RunsAs::kOther:
      return "other";
    case RunsAs::kRefused:
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
  Row row(kOnTheRight.size());
  row[1] = cell.cell.method;
  row[2] = "-";
  row[row.size() - 3] = cell.answer ? inWords(cell.answer->support) : "";
  row[row.size() - 1] = notes.numberOf(remarkOn(record, index, false));
  return row;
}

Section sectionOf(const Record& record, const Group& group, Notes& notes) {
  Section section{fmt::format("Detail {}, {}, {}", group.detail, group.primitive,
                              attributesInWords(group.sent)),
                  {{"", "method", unitOf(group.primitive), "±", "of best", "±", "vertices/call",
                    "ns/call", "GPU", "runs as", "core", "note"}}};
  const bool alone = std::count_if(group.ranking.begin(), group.ranking.end(),
                                   [](const CellFigure& figure) { return figure.leads; }) == 1;
  for (const CellFigure& figure : group.ranking) {
    section.add(rowOf(record, figure, &figure == &group.ranking.front(), alone, notes),
                figure.leads ? Tint::kGood : Tint::kPlain);
  }
  for (const std::size_t cell : group.without) {
    section.add(rowWithoutFigure(record, cell, notes));
  }
  return section;
}

}  // namespace

Grid gridOf(const Record& record, const Figures& figures) {
  Grid grid{kOnTheRight, {}, {}};
  for (const Group& group : figures.groups) {
    grid.sections.push_back(sectionOf(record, group, grid.notes));
  }
  return grid;
}

std::string tableOf(const Record& record, const Figures& figures, bool colours) {
  return asText(gridOf(record, figures), colours);
}

std::string markdownOf(const Record& record, const Figures& figures) {
  return fmt::format("{}\n\n{}\n{}", answerOf(record, figures), sourceOf(record),
                     asMarkdown(gridOf(record, figures)));
}

}  // namespace survey
