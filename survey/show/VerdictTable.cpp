#include "survey/show/VerdictTable.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "survey/show/Answer.h"
#include "survey/show/Numbers.h"
#include "survey/show/Sides.h"
#include "survey/show/Verdict.h"

namespace survey {
namespace {

constexpr double kMillion = 1e6;

Tint tintOf(Verdict verdict) {
  return verdict == Verdict::kSlower   ? Tint::kBad
         : verdict == Verdict::kFaster ? Tint::kGood
                                       : Tint::kPlain;
}

std::string intervalInWords(const Interval& ratio) {
  return std::isfinite(ratio.high) ? fmt::format("{:.3f} to {:.3f}", ratio.low, ratio.high) : "?";
}

/// What only one side says of a cell, or both.
std::string remarkOn(const Comparison& comparison, std::size_t base, std::size_t newer,
                     bool hasFigure) {
  std::string ofBase = survey::remarkOn(comparison.base.record, base, hasFigure);
  const std::string ofNew = survey::remarkOn(comparison.newer.record, newer, hasFigure);
  if (ofBase == ofNew) {
    return ofBase;
  }
  std::string text = ofBase.empty() ? "" : fmt::format("{}: {}", comparison.base.name, ofBase);
  text += text.empty() || ofNew.empty() ? "" : "; ";
  return text + (ofNew.empty() ? "" : fmt::format("{}: {}", comparison.newer.name, ofNew));
}

/// Rates as they were, the machine's moves with them.
std::vector<double> ratesOf(const Record& record) {
  std::vector<double> rates(record.cells.size(), 0);
  for (const Group& group : figuresOf(record).groups) {
    for (const CellFigure& figure : group.ranking) {
      rates[figure.cell] = figure.rate.middle;
    }
  }
  return rates;
}

class Rows {
 public:
  explicit Rows(const Comparison& given) : comparison(given) {
    grid.onTheRight = {false, true, true, true, true, true, false, false};
  }

  /// Sections are groups of neighbours: details are outermost in a record's cells.
  void add(const Cell& cell, Row row, Tint tint) {
    const std::string title =
        fmt::format("Detail {}, {}, {}", cell.detail, cell.primitive, attributesInWords(cell.with));
    auto section = std::find_if(grid.sections.begin(), grid.sections.end(),
                                [&](const Section& existing) { return existing.title == title; });
    if (section == grid.sections.end()) {
      const std::string unit = ' ' + unitOf(cell.primitive);
      grid.sections.push_back(
          {title,
           {{"method", comparison.base.name + unit, comparison.newer.name + unit, "ratio", "95 %",
             "blocks", "verdict", "note"}}});
      section = grid.sections.end() - 1;
    }
    section->add(std::move(row), tint);
  }
  void addWithout(const Cell& cell, const std::string& verdict, const std::string& remark,
                  Tint tint = Tint::kPlain) {
    add(cell, {cell.method, "", "", "-", "", "", verdict, grid.notes.numberOf(remark)}, tint);
  }

  const Comparison& comparison;
  Grid grid;
};

}  // namespace

Grid gridOf(const Comparison& comparison, const Changes& changes) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  const std::vector<double> baseRates = ratesOf(base);
  const std::vector<double> newRates = ratesOf(newer);
  Rows rows(comparison);
  for (const CellChange& cell : changes.cells) {
    const Change& change = cell.change;
    const Cell& planned = base.cells[cell.base].cell;
    rows.add(planned,
             {planned.method, threeDigits(baseRates[cell.base] / kMillion),
              threeDigits(newRates[cell.newer] / kMillion),
              fmt::format("{:.3f}", change.ratio.middle), intervalInWords(change.ratio),
              std::to_string(change.blocks), std::string(inWords(change.verdict)),
              rows.grid.notes.numberOf(remarkOn(comparison, cell.base, cell.newer, true))},
             tintOf(change.verdict));
  }
  for (const std::size_t cell : changes.newFails) {
    const std::string remark = newer.driver.renderer.empty()
                                   ? "no worker came up: " + newer.endingSentence
                                   : survey::remarkOn(newer, cell, false);
    rows.addWithout(newer.cells[cell].cell, "fails",
                    fmt::format("{}: {}", comparison.newer.name, remark), Tint::kBad);
  }
  for (const std::size_t cell : changes.newDies) {
    rows.addWithout(
        newer.cells[cell].cell, "undecided",
        fmt::format("{}: {}", comparison.newer.name, survey::remarkOn(newer, cell, false)));
  }
  for (const std::size_t cell : changes.baseFails) {
    rows.addWithout(
        base.cells[cell].cell, "base fails",
        fmt::format("{}: {}", comparison.base.name, survey::remarkOn(base, cell, false)));
  }
  for (const std::size_t cell : changes.withoutFigures) {
    rows.addWithout(base.cells[cell].cell, "", survey::remarkOn(base, cell, false));
  }
  for (const std::size_t cell : changes.onlyBase) {
    rows.addWithout(base.cells[cell].cell, "missing", "only in " + comparison.base.name);
  }
  for (const std::size_t cell : changes.onlyNew) {
    rows.addWithout(newer.cells[cell].cell, "added", "only in " + comparison.newer.name);
  }
  return std::move(rows.grid);
}

std::string tableOf(const Comparison& comparison, const Changes& changes, bool colours) {
  return asText(gridOf(comparison, changes), colours);
}

std::string markdownOf(const Comparison& comparison, const Changes& changes) {
  std::string text = verdictOf(comparison, changes) + "\n";
  for (const std::string& side : sidesOf(comparison)) {
    text += "\n- " + side;
  }
  return text + '\n' + asMarkdown(gridOf(comparison, changes));
}

}  // namespace survey
