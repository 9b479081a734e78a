#include "survey/judge/Explanation.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"

namespace survey {
namespace {

constexpr std::size_t kMostRows = 12;

std::string inWords(const FunctionChange& function) {
  return function.file.empty()       ? "code made at run time by the driver"
         : function.function.empty() ? function.file + ", which names no function there"
                                     : fmt::format("{} ({})", function.function, function.file);
}

/// "4.0 in note (libglapi.so), which was not there before"
std::string partInWords(const FunctionChange& function, double base) {
  return fmt::format("{:+.1f} in {}{}", kPercent * function.change.middle / base, inWords(function),
                     function.base == 0      ? ", which was not there before"
                     : function.newer == 0   ? ", which is no longer there"
                     : hasSameSize(function) ? ", whose code is as long as before"
                                             : "");
}

/// "drawArrays, detail 64: 4.3 % more time; of that 4.0 in note (libglapi.so)"
std::string titleOf(const Changes& changes, const Explanation& explanation) {
  const Cell& cell = changes.base.cell(explanation.cell);
  std::string title = fmt::format("{}: ", nameOf(cell));
  if (!explanation.whyNot.empty()) {
    return title + "nobody knows where the time goes, as " + explanation.whyNot;
  }
  title += fmt::format("{:+.1f} % of time in {}",
                       kPercent * (explanation.newer / explanation.base - 1), changes.newer.name());
  std::vector<std::string> parts;
  double rest = explanation.newer - explanation.base;
  for (const FunctionChange& function : explanation.functions) {
    constexpr std::size_t kMostParts = 3;
    if (function.changed && parts.size() < kMostParts) {
      parts.push_back(partInWords(function, explanation.base));
      rest -= function.change.middle;
    }
  }
  const Interval& outside = explanation.outside.change;
  if (outside.low > 0 || outside.high < 0) {
    parts.push_back(
        fmt::format("{:+.1f} outside of all functions: in the kernel, or waiting for "
                    "other threads",
                    kPercent * outside.middle / explanation.base));
    rest -= outside.middle;
  }
  return parts.empty() ? title + "; no function takes surely longer or shorter"
                       : fmt::format("{}; of that {}; {:+.1f} elsewhere", title,
                                     fmt::join(parts, ", "), kPercent * rest / explanation.base);
}

Row rowOf(const FunctionChange& function, const std::string& name, double base) {
  const auto percent = [&](double value) {
    return fmt::format("{:+.1f}", kPercent * value / base);
  };
  return {name,
          function.file,
          fmt::format("{:.3f}", function.base),
          fmt::format("{:.3f}", function.newer),
          percent(function.change.middle),
          std::isfinite(function.change.high)
              ? percent(function.change.low) + " to " + percent(function.change.high)
              : "?",
          function.changed ? "changed" : ""};
}

Section sectionOf(const Changes& changes, const Explanation& explanation) {
  Section section{titleOf(changes, explanation),
                  {{"function", "file", changes.base.name() + " ns/vertex",
                    changes.newer.name() + " ns/vertex", "% of time", "95 %", ""}}};
  if (!explanation.whyNot.empty()) {
    return section;
  }
  FunctionChange others;
  for (const FunctionChange& function : explanation.functions) {
    if (section.rows.size() > kMostRows) {
      others.base += function.base;
      others.newer += function.newer;
      continue;
    }
    const std::string name = !function.function.empty() ? function.function
                             : function.file.empty()    ? "made at run time"
                                                        : "(no name)";
    section.add(rowOf(function, name, explanation.base), !function.changed ? Tint::kPlain
                                                         : function.change.middle > 0
                                                             ? Tint::kBad
                                                             : Tint::kGood);
  }
  if (others.base + others.newer > 0) {
    section.add({"others", "", fmt::format("{:.3f}", others.base),
                 fmt::format("{:.3f}", others.newer),
                 fmt::format("{:+.1f}", kPercent * (others.newer - others.base) / explanation.base),
                 "", ""});
  }
  section.add(rowOf(explanation.outside, "outside of functions", explanation.base));
  return section;
}

Section callsOf(const Changes& changes) {
  Section section{
      fmt::format("What {} takes more for a call and for a vertex", changes.newer.name()),
      {{"method", "with", "ns/call", "95 %", "ns/vertex", "95 %", ""}}};
  for (const CallChange& change : callChangesOf(changes)) {
    const Cell& cell = changes.base.cell(change.cell);
    section.add({cell.method, cell.with, fmt::format("{:+.1f}", change.perCall.middle),
                 fmt::format("{:+.1f} to {:+.1f}", change.perCall.low, change.perCall.high),
                 fmt::format("{:+.2f}", change.perVertex.middle),
                 fmt::format("{:+.2f} to {:+.2f}", change.perVertex.low, change.perVertex.high),
                 ""});
  }
  return section;
}

}  // namespace

Grid explanationOf(const std::vector<Changes>& changes) {
  Grid grid{{false, false, true, true, true, true, false}, {}, {}};
  for (const Changes& ofSide : changes) {
    if (Section calls = callsOf(ofSide); calls.rows.size() > 1) {
      grid.sections.push_back(std::move(calls));
    }
    if (ofSide.isInTurns()) {
      for (const Explanation& explanation : explanationsOf(ofSide.base, ofSide.newer)) {
        grid.sections.push_back(sectionOf(ofSide, explanation));
      }
    }
  }
  return grid;
}

}  // namespace survey
