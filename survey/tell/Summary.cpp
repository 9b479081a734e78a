#include "survey/tell/Summary.h"

#include <fmt/format.h>

#include "survey/tell/Sentences.h"

namespace survey {

Summary summaryOf(const SideView& side, const Figures& figures) {
  return {answerOf(side, figures),
          {sourceOf(side)},
          gridOf(side, figures),
          costsOf(side, figures),
          caveatsOf(side, figures)};
}

Summary summaryOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                  double threshold) {
  return {verdictOf(changes, threshold),
          sourcesOf(sides),
          gridOf(changes),
          {},
          caveatsOf(sides, changes, threshold)};
}

std::string asText(const Summary& summary, bool colours) {
  const std::string costs =
      summary.costs.sections.empty() ? "" : '\n' + asText(summary.costs, colours);
  return fmt::format("{}\n{}\n\n{}{}", summary.answer, fmt::join(summary.sources, "\n"),
                     asText(summary.table, colours), costs);
}

std::string asMarkdown(const Summary& summary) {
  const bool several = summary.sources.size() > 1;
  const std::string costs = summary.costs.sections.empty() ? "" : '\n' + asMarkdown(summary.costs);
  return fmt::format("{}\n\n{}{}\n{}{}", summary.answer, several ? "- " : "",
                     fmt::join(summary.sources, "\n- "), asMarkdown(summary.table), costs);
}

}  // namespace survey
