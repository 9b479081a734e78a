#include "survey/tell/Page.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "survey/tell/Charts.h"
#include "survey/tell/Html.h"
#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"

namespace survey {
namespace {

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{}</title>
<style>
:root {{ color-scheme: light dark; --line: #9998; --good: #06763f; --bad: #b34700; }}
@media (prefers-color-scheme: dark) {{ :root {{ --good: #4cc88f; --bad: #ff9a52; }} }}
body {{ font: 16px/1.5 sans-serif; max-width: 80rem; margin: 0 auto; padding: 1rem; }}
h1, h2, h3 {{ line-height: 1.2; }}
.answer {{ font-size: 1.15rem; white-space: pre-line; }}
.charts {{ display: grid; grid-template-columns: repeat(auto-fill, minmax(min(22rem, 100%), 1fr)); gap: 1rem; }}
figure {{ margin: 0; }}
figcaption, caption {{ font-weight: bold; text-align: left; }}
svg {{ width: 100%; height: auto; }}
.wide {{ overflow-x: auto; margin: 1rem 0; }}
table {{ border-collapse: collapse; font-size: 0.9rem; }}
th, td {{ padding: 0.15rem 0.6rem; border-bottom: 1px solid var(--line); text-align: left; white-space: nowrap; }}
th.number, td.number {{ text-align: right; font-variant-numeric: tabular-nums; }}
td.text {{ white-space: normal; overflow-wrap: anywhere; min-width: 12rem; }}
.good {{ color: var(--good); }}
.bad {{ color: var(--bad); font-weight: bold; }}
.notes {{ list-style: none; padding: 0; font-size: 0.9rem; }}
</style>
</head>
<body>
)";

std::string answer(const Summary& summary) {
  return fmt::format("<p class=\"answer\">{}</p>\n",
                     escaped(fmt::format("{}", fmt::join(summary.answer, "\n"))));
}

std::string list(const std::vector<std::string>& sentences) {
  std::string html;
  for (const std::string& sentence : sentences) {
    html += fmt::format("<li>{}</li>\n", escaped(sentence));
  }
  return html.empty() ? "" : "<ul>\n" + html + "</ul>\n";
}

std::string figure(const std::string& caption, const std::string& svg) {
  return fmt::format("<figure><figcaption>{}</figcaption>\n{}</figure>\n", escaped(caption), svg);
}

Interval inMillions(const Interval& rate) {
  return {rate.low / kMillion, rate.middle / kMillion, rate.high / kMillion};
}

/// One side whose methods are ranked, and what it is called on the page.
struct Ranked {
  std::string name;
  SideView side;
  Figures figures;
};

/// What was measured on what: a column for each side.
std::string factsOf(const std::vector<std::pair<std::string, SideView>>& columns) {
  using Fact = std::string (*)(const SideView&);
  constexpr std::pair<const char*, Fact> kFacts[] = {
      {"renderer", [](const SideView& s) { return s.side().driver.renderer; }},
      {"OpenGL", [](const SideView& s) { return s.side().driver.version; }},
      {"device", [](const SideView& s) { return s.side().driver.device; }},
      {"environment",
       [](const SideView& s) {
         std::vector<std::string> all = s.side().environment;
         for (const std::string& variable : s.side().driver.environment) {
           if (std::find(all.begin(), all.end(), variable) == all.end()) {
             all.push_back(variable);
           }
         }
         return fmt::format("{}", fmt::join(all, " "));
       }},
      {"host", [](const SideView& s) { return s.record->machine.host; }},
      {"processor",
       [](const SideView& s) {
         const Machine& machine = s.record->machine;
         return fmt::format("{}, {} processors{}", machine.processor, machine.processors,
                            machine.virtualMachine.empty() ? "" : ", a virtual machine");
       }},
      {"system", [](const SideView& s) { return s.record->machine.kernel; }},
      {"when", [](const SideView& s) { return s.record->before.when; }},
      {"took", [](const SideView& s) { return fmt::format("{:.0f} s", s.record->elapsed); }},
      {"command", [](const SideView& s) { return s.record->settings.commandLine; }},
      {"survey", [](const SideView& s) {
         const Program& program = s.record->program;
         return fmt::format("{} {}, {}", program.version, program.commit, program.flags);
       }}};
  std::string html = "<div class=\"wide\"><table>\n<thead><tr><th></th>";
  for (const auto& [name, side] : columns) {
    html += fmt::format("<th>{}</th>", escaped(name));
  }
  html += "</tr></thead>\n<tbody>\n";
  for (const auto& [fact, of] : kFacts) {
    std::string cells;
    bool known = false;
    for (const auto& [name, side] : columns) {
      const std::string text = of(side);
      known = known || !text.empty();
      cells += fmt::format("<td class=\"text\">{}</td>", escaped(text));
    }
    html += known ? fmt::format("<tr><th>{}</th>{}</tr>\n", fact, cells) : "";
  }
  html += "<tr><th>driver files</th>";
  for (const auto& [name, side] : columns) {
    std::vector<std::string> files;
    for (const Library& library : side.side().driver.libraries) {
      files.push_back(fileInWords(library));
    }
    html += fmt::format(
        "<td class=\"text\"><details><summary>{} that were loaded</summary>{}</details></td>",
        files.size(), escaped(fmt::format("{}", fmt::join(files, " "))));
  }
  return html + "</tr>\n</tbody></table></div>\n";
}

/// A method's figure in a group like that one.
const CellFigure* figureIn(const Ranked& ranked, const Group& like, const std::string& method) {
  for (const Group& group : ranked.figures.groups) {
    if (group.primitive == like.primitive && group.detail == like.detail &&
        group.sent == like.sent) {
      for (const CellFigure& candidate : group.ranking) {
        if (ranked.side.cell(candidate.cell).method == method) {
          return &candidate;
        }
      }
    }
  }
  return nullptr;
}

std::string titleOf(const Group& group) {
  return groupInWords(group.detail, group.primitive, group.sent);
}

/// Groups of any of the sides, each once, with their methods in the order of who has them first.
std::vector<std::pair<Group, std::vector<std::string>>> groupsOf(const std::vector<Ranked>& sides) {
  std::vector<std::pair<Group, std::vector<std::string>>> groups;
  for (const Ranked& ranked : sides) {
    for (const Group& group : ranked.figures.groups) {
      auto place = std::find_if(groups.begin(), groups.end(), [&](const auto& known) {
        return titleOf(known.first) == titleOf(group);
      });
      if (place == groups.end()) {
        groups.push_back({group, {}});
        place = groups.end() - 1;
      }
      for (const CellFigure& candidate : group.ranking) {
        const std::string& method = ranked.side.cell(candidate.cell).method;
        if (std::find(place->second.begin(), place->second.end(), method) == place->second.end()) {
          place->second.push_back(method);
        }
      }
    }
  }
  return groups;
}

std::string barCharts(const std::vector<Ranked>& sides) {
  std::vector<std::string> names;
  names.reserve(sides.size());
  for (const Ranked& ranked : sides) {
    names.push_back(ranked.name);
  }
  std::string html;
  for (const auto& [group, methods] : groupsOf(sides)) {
    std::vector<Bars> bars;
    for (const std::string& method : methods) {
      Bars row{method, {}};
      for (const Ranked& ranked : sides) {
        const CellFigure* const found = figureIn(ranked, group, method);
        row.values.push_back(found == nullptr ? std::nullopt
                                              : std::optional(inMillions(found->rate)));
      }
      bars.push_back(std::move(row));
    }
    if (!bars.empty()) {
      const std::string title = titleOf(group);
      html += figure(title, barChart(title, bars, names, unitOf(group.primitive)));
    }
  }
  return html;
}

/// For each primitive and attributes with several details.
std::string lineCharts(const Ranked& ranked, const std::string& whose) {
  std::string html;
  std::vector<std::pair<std::string, std::string>> done;
  for (const Group& first : ranked.figures.groups) {
    const std::pair kind(first.primitive, first.sent);
    if (std::find(done.begin(), done.end(), kind) != done.end()) {
      continue;
    }
    done.push_back(kind);
    std::vector<Line> lines;
    bool several = false;
    for (const Group& group : ranked.figures.groups) {
      if (std::pair(group.primitive, group.sent) != kind) {
        continue;
      }
      several = several || group.detail != first.detail;
      for (const CellFigure& candidate : group.ranking) {
        const std::string& method = ranked.side.cell(candidate.cell).method;
        auto line = std::find_if(lines.begin(), lines.end(),
                                 [&](const auto& known) { return known.name == method; });
        if (line == lines.end()) {
          lines.push_back({method, {}});
          line = lines.end() - 1;
        }
        line->points.push_back({static_cast<double>(group.detail), inMillions(candidate.rate)});
      }
    }
    if (several && !lines.empty()) {
      const std::string title =
          fmt::format("Rates over detail, {}, {}{}", first.primitive, attributesInWords(first.sent),
                      whose.empty() ? "" : ", " + whose);
      html += figure(title, lineChart(title, lines, unitOf(first.primitive)));
    }
  }
  return html;
}

std::string tablesOf(const Summary& summary) {
  std::string html;
  for (const Grid& table : summary.tables) {
    html += htmlOf(table);
  }
  return html;
}

/// Sides, each ranked by itself, with their charts side by side; `level` is that of their headings.
std::string rankingsOf(const std::vector<Ranked>& sides, int level) {
  const bool several = sides.size() > 1;
  const auto heading = [=](int below, const std::string& text) {
    return fmt::format("<h{0}>{1}</h{0}>\n", level + below, escaped(text));
  };
  std::string html = several ? heading(0, "Side by side") : "";
  std::string figures;
  std::string lines;
  std::vector<std::pair<std::string, SideView>> columns;
  for (const Ranked& ranked : sides) {
    const Summary summary = summaryOf(ranked.side, ranked.figures);
    columns.emplace_back(ranked.name, ranked.side);
    html += several ? heading(1, ranked.name) : "";
    html += answer(summary) + list(summary.caveats);
    lines += lineCharts(ranked, several ? ranked.name : "");
    figures += heading(0, several ? ranked.name : "Figures") + tablesOf(summary);
  }
  html += heading(0, "Rates") + "<div class=\"charts\">\n" + barCharts(sides) + lines;
  return html +
         "</div>\n<p>Bars and points are rates; the lines through them are intervals of "
         "95&nbsp;%.</p>\n" +
         figures + heading(0, "Measured on") + factsOf(columns);
}

/// The ratios of one side against the first.
std::string ratioCharts(const Changes& changes, double threshold) {
  std::vector<std::pair<std::string, std::vector<Ratio>>> sections;
  for (const CellChange& cell : changes.cells) {
    const Cell& planned = changes.base.cell(cell.base);
    const std::string title = groupInWords(planned.detail, planned.primitive, planned.with);
    if (sections.empty() || sections.back().first != title) {
      sections.push_back({title, {}});
    }
    sections.back().second.push_back({planned.method, cell.change.ratio, cell.change.verdict});
  }
  if (!changes.cells.empty()) {
    sections.push_back(
        {"All cells", {{"geometric mean", changes.overall.ratio, changes.overall.verdict}}});
  }
  const std::string axis = changes.newer.name() + " / " + changes.base.name();
  std::string html;
  for (const auto& [title, ratios] : sections) {
    html += figure(title, ratioChart(title, ratios, axis, threshold));
  }
  return html;
}

std::string comparisonOf(const NamedResult& named) {
  const double threshold = named.result.threshold;
  const std::vector<SideView> sides = sidesOf(named.result);
  const std::vector<Changes> changes = changesOf(sides, threshold);
  const Summary summary = summaryOf(sides, changes, threshold);
  std::string html = fmt::format("<h2>{}</h2>\n", escaped(named.name));
  html += answer(summary) + list(summary.caveats);
  html += list(summary.sources);
  for (const Changes& ofSide : changes) {
    html += fmt::format("<h3>Ratios of {} to {}</h3>\n<div class=\"charts\">\n{}</div>\n",
                        escaped(ofSide.newer.name()), escaped(ofSide.base.name()),
                        ratioCharts(ofSide, threshold));
  }
  html += fmt::format(
      "<p>A ratio below 1 is slower. The lines are intervals of 95&nbsp;%, the band is the "
      "threshold of {:g}&nbsp;%.</p>\n<h3>Changes</h3>\n{}",
      threshold, tablesOf(summary));
  std::vector<Ranked> ranked;
  ranked.reserve(sides.size());
  const std::vector<std::string> labels = labelsOf(sides);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    ranked.push_back({labels[i], sides[i], figuresOf(sides[i])});
  }
  return html + rankingsOf(ranked, 3);
}

}  // namespace

std::string pageOf(const std::vector<NamedResult>& results) {
  const std::string title = "OpenGL vertex throughput";
  std::vector<Ranked> surveys;
  std::string comparisons;
  for (const NamedResult& named : results) {
    if (named.result.isComparison()) {
      comparisons += comparisonOf(named);
    } else {
      const SideView side = sidesOf(named.result).front();
      surveys.push_back({named.name, side, figuresOf(side)});
    }
  }
  return fmt::format(fmt::runtime(kHead), title) + "<h1>" + title + "</h1>\n" +
         (surveys.empty() ? "" : rankingsOf(surveys, 2)) + comparisons + "</body>\n</html>\n";
}

}  // namespace survey
