#include <cmath>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "platform/process/ForeignText.h"
#include "survey/tell/Files.h"
#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

std::string quoted(std::string_view text) {
  std::string field = "\"";
  for (const char character : text) {
    field.append(character == '"' ? 2 : 1, character);
  }
  return field + '"';
}

/// What others wrote: a spreadsheet would take it for a formula where it begins as one.
std::string quotedForeign(std::string_view text) {
  constexpr std::string_view kFormulasBegin = "=+-@";
  const std::string field = harmless(text);
  const bool isFormula =
      !field.empty() && kFormulasBegin.find(field.front()) != std::string_view::npos;
  return quoted((isFormula ? "'" : "") + field);
}

std::string number(double value) {
  return std::isfinite(value) ? fmt::format("{:.6g}", value) : "";
}

std::string_view yesOrNo(bool value) {
  return value ? "yes" : "no";
}

/// What is known of a cell without measuring it.
std::vector<std::string> planned(const Cell& cell, const Group& group) {
  return {quoted(nameOf(cell)),        cell.method,       cell.primitive,
          std::to_string(cell.detail), quoted(cell.with), quoted(group.sent),
          unitOf(cell.primitive)};
}

std::vector<std::string> measured(const CellAnswer& answer, const CellFigure& figure) {
  return {number(figure.rate.middle / kMillion),
          number(figure.rate.low / kMillion),
          number(figure.rate.high / kMillion),
          number(figure.ratio.middle),
          number(figure.ratio.low),
          number(figure.ratio.high),
          std::string(yesOrNo(figure.leads)),
          std::string(yesOrNo(figure.precise)),
          std::to_string(figure.blocks),
          std::to_string(figure.visits),
          figure.slowFactor ? number(figure.slowFactor->middle) : "",
          number(answer.verticesPerCall),
          number(figure.nanosecondsPerCall),
          figure.gpuShare ? number(*figure.gpuShare) : "",
          std::string(yesOrNo(answer.inCoreProfile))};
}

constexpr std::string_view kHeadings =
    "name,method,primitive,detail,with,sent,unit,rate,rate_low,rate_high,ratio,ratio_low,"
    "ratio_high,leads,precise,blocks,visits,slow_factor,vertices_per_call,ns_per_call,gpu_share,"
    "core_profile,remark\n";
constexpr std::size_t kMeasuredFields = 15;

}  // namespace

std::string csvOf(const SideView& side, const Figures& figures) {
  std::string text(kHeadings);
  const auto addRow = [&](const Group& group, std::size_t cell, const CellFigure* figure) {
    const auto values = figure != nullptr ? measured(*side.state(cell).answer, *figure)
                                          : std::vector<std::string>(kMeasuredFields);
    text +=
        fmt::format("{},{},{}\n", fmt::join(planned(side.cell(cell), group), ","),
                    fmt::join(values, ","), quotedForeign(remarkOn(side, cell, figure != nullptr)));
  };
  for (const Group& group : figures.groups) {
    for (const CellFigure& figure : group.ranking) {
      addRow(group, figure.cell, &figure);
    }
    for (const std::size_t cell : group.without) {
      addRow(group, cell, nullptr);
    }
  }
  return text;
}

}  // namespace survey
