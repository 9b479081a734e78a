#include "survey/tell/Summary.h"

#include <utility>

#include <fmt/format.h>

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

}  // namespace

Summary summaryOf(const SideView& side, const Figures& figures) {
  return {answerOf(side, figures),
          {sourceOf(side)},
          tablesOf(gridOf(side, figures), costsOf(side, figures)),
          caveatsOf(side, figures)};
}

Summary summaryOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                  double threshold) {
  return {verdictOf(changes, threshold), sourcesOf(sides),
          tablesOf(gridOf(changes), explanationOf(changes)), caveatsOf(sides, changes, threshold)};
}

std::string asText(const Summary& summary, bool colours) {
  std::string text = fmt::format("{}\n{}\n", summary.answer, fmt::join(summary.sources, "\n"));
  for (const Grid& table : summary.tables) {
    text += '\n' + asText(table, colours);
  }
  return text;
}

std::string asMarkdown(const Summary& summary) {
  const bool several = summary.sources.size() > 1;
  std::string text = fmt::format("{}\n\n{}{}\n", summary.answer, several ? "- " : "",
                                 fmt::join(summary.sources, "\n- "));
  for (const Grid& table : summary.tables) {
    text += asMarkdown(table);
  }
  return text;
}

}  // namespace survey
