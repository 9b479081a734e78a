#include "survey/tell/Summary.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/process/ForeignText.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

std::vector<Grid> tablesOf(Grid first, Grid second) {
  std::vector<Grid> tables{std::move(first)};
  if (!second.sections.empty()) {
    tables.push_back(std::move(second));
  }
  return tables;
}

void makeHarmless(std::vector<std::string>& texts) {
  for (std::string& text : texts) {
    text = ::harmless(text);
  }
}

/// Whoever shows it need not think of what drivers, files and environments may hold.
Summary harmless(Summary summary) {
  makeHarmless(summary.answer);
  makeHarmless(summary.sources);
  makeHarmless(summary.caveats);
  for (Grid& table : summary.tables) {
    makeHarmless(table.notes.all());
    for (Section& section : table.sections) {
      section.title = ::harmless(section.title);
      std::for_each(section.rows.begin(), section.rows.end(), makeHarmless);
    }
  }
  return summary;
}

}  // namespace

Summary summaryOf(const SideView& side, const Figures& figures) {
  return harmless({answerOf(side, figures),
                   {sourceOf(side)},
                   tablesOf(gridOf(side, figures), costsOf(side, figures)),
                   caveatsOf(side, figures)});
}

Summary summaryOf(const Question& question, const SideView& side, const Figures& figures) {
  const std::vector<MethodAdvice> advice = adviceFor(question, side);
  std::vector<std::string> caveats = caveatsOf(side, figures);
  std::erase_if(caveats, [](const std::string& sentence) {
    return sentence.starts_with("Not as precise");  // the answer has a precision of its own
  });
  return harmless({{answerOf(question, advice)},
                   {sourceOf(side)},
                   gridsOf(question, advice),
                   std::move(caveats)});
}

Summary summaryOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                  double threshold) {
  return harmless({verdictOf(changes, threshold), sourcesOf(sides),
                   tablesOf(gridOf(changes), explanationOf(changes)),
                   caveatsOf(sides, changes, threshold)});
}

std::string asText(const Summary& summary, bool colours) {
  std::string text =
      fmt::format("{}\n{}\n", fmt::join(summary.answer, "\n"), fmt::join(summary.sources, "\n"));
  for (const Grid& table : summary.tables) {
    text += '\n' + asText(table, colours);
  }
  return text;
}

std::string asMarkdown(const Summary& summary) {
  std::string text;
  for (const std::string& sentence : summary.answer) {
    text += inMarkdown(sentence) + '\n';
  }
  text += '\n';
  for (const std::string& source : summary.sources) {
    text += (summary.sources.size() > 1 ? "- " : "") + inMarkdown(source) + '\n';
  }
  for (const Grid& table : summary.tables) {
    text += asMarkdown(table);
  }
  return text;
}

}  // namespace survey
