#include <algorithm>
#include <cmath>
#include <string_view>

#include <fmt/format.h>

#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"

namespace survey {
namespace {

/// The words that columns of numbers do without stand on the left.
const std::vector<bool> kOnTheRight = {false, false, true, true,  true,  true, true,
                                       true,  true,  true, false, false, false};

std::string_view inWords(RunsAs runsAs) {
  switch (runsAs) {
    case RunsAs::kItself:
      return "itself";
    case RunsAs::kStandIn:
      return "stand-in";
    case RunsAs::kOther:
      return "other";
    case RunsAs::kRefused:
      break;
  }
  return "refused";
}

Row rowOf(const SideView& side, const CellFigure& figure, bool best, bool alone, Notes& notes) {
  const CellAnswer& answer = *side.state(figure.cell).answer;
  return {figure.leads ? (alone ? ">" : "=") : "",
          side.cell(figure.cell).method,
          threeDigits(figure.rate.middle / kMillion),
          spreadOf(figure.rate),
          fmt::format("{:.3f}", figure.ratio.middle),
          best ? "" : spreadOf(figure.ratio),
          fmt::format("{:.0f}", answer.verticesPerCall),
          threeDigits(figure.nanosecondsPerCall),
          figure.gpuShare ? fmt::format("{:.0f} %", kPercent * *figure.gpuShare) : "",
          figure.slowFactor ? fmt::format("{:.2f}", figure.slowFactor->middle) : "",
          std::string(inWords(answer.runsAs)),
          answer.inCoreProfile ? "yes" : "no",
          notes.numberOf(remarkOn(side, figure))};
}

Row rowWithoutFigure(const SideView& side, std::size_t cell, Notes& notes) {
  const auto& answer = side.state(cell).answer;
  Row row(kOnTheRight.size());
  row[1] = side.cell(cell).method;
  row[2] = "-";
  row[row.size() - 3] = answer ? inWords(answer->runsAs) : "";
  row[row.size() - 1] = notes.numberOf(remarkOn(side, cell, false));
  return row;
}

Section sectionOf(const SideView& side, const Group& group, Notes& notes) {
  Section section{groupInWords(group.detail, group.primitive, group.sent),
                  {{"", "method", unitOf(group.primitive), "±", "of best", "±", "vertices/call",
                    "ns/call", "GPU", "if shared", "runs as", "core", "note"}}};
  const bool alone = std::count_if(group.ranking.begin(), group.ranking.end(),
                                   [](const CellFigure& figure) { return figure.leads; }) == 1;
  for (const CellFigure& figure : group.ranking) {
    section.add(rowOf(side, figure, &figure == &group.ranking.front(), alone, notes),
                figure.leads ? Tint::kGood : Tint::kPlain);
  }
  for (const std::size_t cell : group.without) {
    section.add(rowWithoutFigure(side, cell, notes));
  }
  return section;
}

Tint tintOf(Verdict verdict) {
  return verdict == Verdict::kSlower   ? Tint::kBad
         : verdict == Verdict::kFaster ? Tint::kGood
                                       : Tint::kPlain;
}

std::string intervalInWords(const Interval& ratio) {
  return std::isfinite(ratio.high) ? fmt::format("{:.3f} to {:.3f}", ratio.low, ratio.high) : "?";
}

/// Rates as they were, the machine's moves with them.
std::vector<double> ratesOf(const SideView& side) {
  std::vector<double> rates(side.record->cells.size(), 0);
  for (const Group& group : figuresOf(side).groups) {
    for (const CellFigure& figure : group.ranking) {
      rates[figure.cell] = figure.rate.middle;
    }
  }
  return rates;
}

/// Rows of one side's changes, in the sections that they belong to.
class Rows {
 public:
  Rows(Grid& of, const Changes& ofSide, bool amongSeveral)
      : grid(of), changes(ofSide), several(amongSeveral) {}

  /// Sections are groups of neighbours: details are outermost in a sitting's cells.
  void add(const Cell& cell, Row row, Tint tint) {
    const std::string title = groupInWords(cell.detail, cell.primitive, cell.with) +
                              (several ? ": " + changes.newer.name() : "");
    auto section = std::find_if(grid.sections.begin(), grid.sections.end(),
                                [&](const Section& existing) { return existing.title == title; });
    if (section == grid.sections.end()) {
      const std::string unit = ' ' + unitOf(cell.primitive);
      grid.sections.push_back(
          {title,
           {{"method", changes.base.name() + unit, changes.newer.name() + unit, "ratio", "95 %",
             changes.isInTurns() ? "blocks" : "sittings", "verdict", "note"}}});
      section = grid.sections.end() - 1;
    }
    section->add(std::move(row), tint);
  }
  void addWithout(const Cell& cell, const std::string& verdict, const std::string& remark,
                  Tint tint = Tint::kPlain) {
    add(cell, {cell.method, "", "", "-", "", "", verdict, grid.notes.numberOf(remark)}, tint);
  }
  /// A cell that this side alone has something to say of.
  void addWithout(const SideView& side, std::size_t cell, const std::string& verdict,
                  Tint tint = Tint::kPlain) {
    addWithout(side.cell(cell), verdict,
               fmt::format("{}: {}", side.name(),
                           side.side().started()
                               ? remarkOn(side, cell, false)
                               : "no worker could be started: " + side.side().whyNoWorker),
               tint);
  }

 private:
  Grid& grid;
  const Changes& changes;
  bool several;
};

void addRows(Grid& grid, const Changes& changes, const std::vector<double>& baseRates,
             bool amongSeveral) {
  const SideView& base = changes.base;
  const SideView& newer = changes.newer;
  const std::vector<double> newRates = ratesOf(newer);
  Rows rows(grid, changes, amongSeveral);
  for (const CellChange& cell : changes.cells) {
    const Change& change = cell.change;
    const Cell& planned = base.cell(cell.base);
    rows.add(
        planned,
        {planned.method, threeDigits(baseRates[cell.base] / kMillion),
         threeDigits(newRates[cell.newer] / kMillion), fmt::format("{:.3f}", change.ratio.middle),
         intervalInWords(change.ratio), std::to_string(change.units),
         std::string(inWords(change.verdict)), grid.notes.numberOf(remarkOn(changes, cell))},
        tintOf(change.verdict));
  }
  for (const std::size_t cell : changes.newFails) {
    rows.addWithout(newer, cell, "fails", Tint::kBad);
  }
  for (const std::size_t cell : changes.newDies) {
    rows.addWithout(newer, cell, "undecided");
  }
  for (const std::size_t cell : changes.baseFails) {
    rows.addWithout(base, cell, "base fails");
  }
  for (const std::size_t cell : changes.withoutFigures) {
    rows.addWithout(base.cell(cell), "", remarkOn(base, cell, false));
  }
  for (const std::size_t cell : changes.onlyBase) {
    rows.addWithout(base.cell(cell), "missing", "only in " + base.name());
  }
  for (const std::size_t cell : changes.onlyNew) {
    rows.addWithout(newer.cell(cell), "added", "only in " + newer.name());
  }
}

}  // namespace

Grid gridOf(const SideView& side, const Figures& figures) {
  Grid grid{kOnTheRight, {}, {}};
  for (const Group& group : figures.groups) {
    grid.sections.push_back(sectionOf(side, group, grid.notes));
  }
  return grid;
}

Grid gridOf(const std::vector<Changes>& changes) {
  Grid grid{{false, true, true, true, true, true, false, false}, {}, {}};
  const std::vector<double> baseRates = ratesOf(changes.front().base);
  for (const Changes& ofSide : changes) {
    addRows(grid, ofSide, baseRates, changes.size() > 1);
  }
  return grid;
}

Grid costsOf(const SideView& side, const Figures& figures) {
  Grid grid{{false, true, false, false, true, true, true, true}, {}, {}};
  for (const AttributeCost& cost : figures.costs) {
    if (grid.sections.empty()) {
      grid.sections.push_back(
          {"What attributes cost",
           {{"method", "detail", "with", "beside", "ns/vertex", "95 %", "times as long", "95 %"}}});
    }
    const Cell& cell = side.cell(cost.cell);
    const auto sent = [&](std::size_t of) { return side.state(of).answer->sent; };
    const std::string beside = sent(cost.beside);
    const bool known = std::isfinite(cost.times.high);
    grid.sections[0].add(
        {cell.method, std::to_string(cell.detail), sent(cost.cell),
         beside.empty() ? "vertices alone" : beside, fmt::format("{:.2f}", cost.perVertex.middle),
         known ? fmt::format("{:.2f} to {:.2f}", cost.perVertex.low, cost.perVertex.high) : "?",
         fmt::format("{:.2f}", cost.times.middle),
         known ? fmt::format("{:.2f} to {:.2f}", cost.times.low, cost.times.high) : "?"});
  }
  return grid;
}

}  // namespace survey
