#include "survey/tell/Summary.h"

#include <fmt/format.h>

#include "survey/tell/Sentences.h"

namespace survey {

Summary summaryOf(const SideView& side, const Figures& figures) {
  return {
      answerOf(side, figures), {sourceOf(side)}, gridOf(side, figures), caveatsOf(side, figures)};
}

Summary summaryOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                  double threshold) {
  return {verdictOf(changes, threshold), sourcesOf(sides), gridOf(changes),
          caveatsOf(sides, changes, threshold)};
}

std::string asText(const Summary& summary, bool colours) {
  return fmt::format("{}\n{}\n\n{}", summary.answer, fmt::join(summary.sources, "\n"),
                     asText(summary.table, colours));
}

std::string asMarkdown(const Summary& summary) {
  const bool several = summary.sources.size() > 1;
  return fmt::format("{}\n\n{}{}\n{}", summary.answer, several ? "- " : "",
                     fmt::join(summary.sources, "\n- "), asMarkdown(summary.table));
}

}  // namespace survey
