#include "survey/page/Page.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "survey/figures/Changes.h"
#include "survey/figures/Figures.h"
#include "survey/page/Charts.h"
#include "survey/page/Html.h"
#include "survey/show/Answer.h"
#include "survey/show/Numbers.h"
#include "survey/show/Sides.h"
#include "survey/show/Table.h"
#include "survey/show/Verdict.h"
#include "survey/show/VerdictTable.h"

namespace survey {
namespace {

constexpr double kMillion = 1e6;

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
.answer {{ font-size: 1.15rem; }}
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

std::string paragraph(const std::string& text, const std::string& style = "") {
  return fmt::format("<p{}>{}</p>\n", style.empty() ? "" : " class=\"" + style + "\"",
                     escaped(text));
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

/// One survey of the page.
struct Survey {
  std::string name;
  const Record* record;
  Figures figures;
};

/// What was measured on what: a column for each record.
std::string sourcesOf(const std::vector<std::pair<std::string, const Record*>>& records) {
  using Fact = std::string (*)(const Record&);
  constexpr std::pair<const char*, Fact> kFacts[] = {
      {"renderer", [](const Record& r) { return r.driver.renderer; }},
      {"OpenGL", [](const Record& r) { return r.driver.version; }},
      {"device", [](const Record& r) { return r.driver.device; }},
      {"environment",
       [](const Record& r) { return fmt::format("{}", fmt::join(r.settings.environment, " ")); }},
      {"host", [](const Record& r) { return r.machine.host; }},
      {"processor",
       [](const Record& r) {
         return fmt::format("{}, {} processors{}", r.machine.processor, r.machine.processors,
                            r.machine.virtualMachine.empty() ? "" : ", a virtual machine");
       }},
      {"system", [](const Record& r) { return r.machine.kernel; }},
      {"when", [](const Record& r) { return r.before.when; }},
      {"took", [](const Record& r) { return fmt::format("{:.0f} s", r.elapsed); }},
      {"command", [](const Record& r) { return r.settings.commandLine; }},
      {"survey", [](const Record& r) {
         return fmt::format("{} {}, {}", r.program.version, r.program.commit, r.program.flags);
       }}};
  std::string html = "<div class=\"wide\"><table>\n<thead><tr><th></th>";
  for (const auto& [name, record] : records) {
    html += fmt::format("<th>{}</th>", escaped(name));
  }
  html += "</tr></thead>\n<tbody>\n";
  for (const auto& [fact, of] : kFacts) {
    std::string cells;
    bool known = false;
    for (const auto& [name, record] : records) {
      const std::string text = of(*record);
      known = known || !text.empty();
      cells += fmt::format("<td class=\"text\">{}</td>", escaped(text));
    }
    html += known ? fmt::format("<tr><th>{}</th>{}</tr>\n", fact, cells) : "";
  }
  html += "<tr><th>driver files</th>";
  for (const auto& [name, record] : records) {
    const std::vector<std::string>& files = record->driver.libraries;
    html += fmt::format(
        "<td class=\"text\"><details><summary>{} that were loaded</summary>{}</details></td>",
        files.size(), escaped(fmt::format("{}", fmt::join(files, " "))));
  }
  return html + "</tr>\n</tbody></table></div>\n";
}

/// A method's figure in a group like that one.
const CellFigure* figureIn(const Survey& survey, const Group& like, const std::string& method) {
  for (const Group& group : survey.figures.groups) {
    if (group.primitive == like.primitive && group.detail == like.detail &&
        group.sent == like.sent) {
      for (const CellFigure& candidate : group.ranking) {
        if (survey.record->cells[candidate.cell].cell.method == method) {
          return &candidate;
        }
      }
    }
  }
  return nullptr;
}

std::string titleOf(const Group& group) {
  return fmt::format("Detail {}, {}, {}", group.detail, group.primitive,
                     attributesInWords(group.sent));
}

/// Groups of any of the surveys, each once, with their methods in the order of who has them first.
std::vector<std::pair<Group, std::vector<std::string>>> groupsOf(
    const std::vector<Survey>& surveys) {
  std::vector<std::pair<Group, std::vector<std::string>>> groups;
  for (const Survey& survey : surveys) {
    for (const Group& group : survey.figures.groups) {
      auto place = std::find_if(groups.begin(), groups.end(), [&](const auto& known) {
        return titleOf(known.first) == titleOf(group);
      });
      if (place == groups.end()) {
        groups.push_back({group, {}});
        place = groups.end() - 1;
      }
      for (const CellFigure& candidate : group.ranking) {
        const std::string& method = survey.record->cells[candidate.cell].cell.method;
        if (std::find(place->second.begin(), place->second.end(), method) == place->second.end()) {
          place->second.push_back(method);
        }
      }
    }
  }
  return groups;
}

std::string barCharts(const std::vector<Survey>& surveys, Charts& charts) {
  std::vector<std::string> names;
  names.reserve(surveys.size());
  for (const Survey& survey : surveys) {
    names.push_back(survey.name);
  }
  std::string html;
  for (const auto& [group, methods] : groupsOf(surveys)) {
    std::vector<Charts::Bars> bars;
    for (const std::string& method : methods) {
      Charts::Bars row{method, {}};
      for (const Survey& survey : surveys) {
        const CellFigure* const found = figureIn(survey, group, method);
        row.values.push_back(found == nullptr ? std::nullopt
                                              : std::optional(inMillions(found->rate)));
      }
      bars.push_back(std::move(row));
    }
    if (!bars.empty()) {
      const std::string title = titleOf(group);
      html += figure(title, charts.bars(title, bars, names, unitOf(group.primitive)));
    }
  }
  return html;
}

/// For each primitive and attributes with several details.
std::string lineCharts(const Survey& survey, Charts& charts) {
  std::string html;
  std::vector<std::pair<std::string, std::string>> done;
  for (const Group& first : survey.figures.groups) {
    const std::pair kind(first.primitive, first.sent);
    if (std::find(done.begin(), done.end(), kind) != done.end()) {
      continue;
    }
    done.push_back(kind);
    std::vector<Charts::Line> lines;
    bool several = false;
    for (const Group& group : survey.figures.groups) {
      if (std::pair(group.primitive, group.sent) != kind) {
        continue;
      }
      several = several || group.detail != first.detail;
      for (const CellFigure& candidate : group.ranking) {
        const std::string& method = survey.record->cells[candidate.cell].cell.method;
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
                      survey.name.empty() ? "" : ", " + survey.name);
      html += figure(title, charts.lines(title, lines, unitOf(first.primitive)));
    }
  }
  return html;
}

std::string surveysOf(const std::vector<Survey>& surveys, Charts& charts) {
  std::vector<std::pair<std::string, const Record*>> records;
  std::string html = surveys.size() > 1 ? "<h2>Side by side</h2>\n" : "";
  for (const Survey& survey : surveys) {
    records.emplace_back(survey.name, survey.record);
    html += surveys.size() > 1 ? fmt::format("<h3>{}</h3>\n", escaped(survey.name)) : "";
    html += paragraph(answerOf(*survey.record, survey.figures), "answer");
  }
  html += "<h2>Measured on</h2>\n" + sourcesOf(records);
  html += "<h2>Rates</h2>\n<div class=\"charts\">\n" + barCharts(surveys, charts);
  for (const Survey& survey : surveys) {
    html +=
        lineCharts(surveys.size() > 1 ? survey : Survey{"", survey.record, survey.figures}, charts);
  }
  html +=
      "</div>\n<p>Bars and points are rates; the lines through them are intervals of "
      "95&nbsp;%.</p>\n";
  for (const Survey& survey : surveys) {
    html += fmt::format("<h2>{}</h2>\n", surveys.size() > 1 ? escaped(survey.name) : "Figures");
    html += htmlOf(gridOf(*survey.record, survey.figures));
    html += list(caveatsOf(*survey.record, survey.figures));
  }
  return html;
}

std::string comparisonOf(const std::string& name, const Comparison& comparison, Charts& charts) {
  const Changes changes = changesOf(comparison);
  std::string html = fmt::format("<h2>{}</h2>\n", escaped(name));
  html += paragraph(verdictOf(comparison, changes), "answer");
  html += "<h3>Measured on</h3>\n" + sourcesOf({{comparison.base.name, &comparison.base.record},
                                                {comparison.newer.name, &comparison.newer.record}});
  html += list(sidesOf(comparison));
  html += "<h3>Ratios</h3>\n<div class=\"charts\">\n";
  std::vector<std::pair<std::string, std::vector<Charts::Ratio>>> sections;
  for (const CellChange& cell : changes.cells) {
    const Cell& planned = comparison.base.record.cells[cell.base].cell;
    const std::string title = fmt::format("Detail {}, {}, {}", planned.detail, planned.primitive,
                                          attributesInWords(planned.with));
    if (sections.empty() || sections.back().first != title) {
      sections.push_back({title, {}});
    }
    sections.back().second.push_back({planned.method, cell.change.ratio, cell.change.verdict});
  }
  if (!changes.cells.empty()) {
    sections.push_back(
        {"All cells", {{"geometric mean", changes.overall.ratio, changes.overall.verdict}}});
  }
  for (const auto& [title, ratios] : sections) {
    html += figure(
        title, charts.ratios(title, ratios, comparison.newer.name + " / " + comparison.base.name,
                             comparison.threshold));
  }
  html += fmt::format(
      "</div>\n<p>A ratio below 1 is slower. The lines are intervals of 95&nbsp;%, the band is the "
      "threshold of {:g}&nbsp;%.</p>\n<h3>Figures</h3>\n",
      comparison.threshold);
  return html + htmlOf(gridOf(comparison, changes)) + list(caveatsOf(comparison, changes));
}

}  // namespace

std::string pageOf(const std::vector<NamedResult>& results) {
  const std::string title = "OpenGL vertex throughput";
  Charts charts;
  std::vector<Survey> surveys;
  for (const NamedResult& named : results) {
    if (const auto* const record = std::get_if<Record>(&named.result)) {
      surveys.push_back({named.name, record, figuresOf(*record)});
    }
  }
  std::string html = fmt::format(fmt::runtime(kHead), title) + "<h1>" + title + "</h1>\n";
  html += surveys.empty() ? "" : surveysOf(surveys, charts);
  for (const NamedResult& named : results) {
    if (const auto* const comparison = std::get_if<Comparison>(&named.result)) {
      html += comparisonOf(named.name, *comparison, charts);
    }
  }
  return html + "</body>\n</html>\n";
}

}  // namespace survey
