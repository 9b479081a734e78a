/// What is shown of sides in whatever form: the answer, what they were measured on, a table, and
/// what has to be known beside it.
#pragma once

#include <string>
#include <vector>

#include "survey/judge/Advice.h"
#include "survey/judge/Changes.h"
#include "survey/judge/Figures.h"
#include "survey/tell/Grid.h"

namespace survey {

struct Summary {
  std::vector<std::string> answer;  ///< sentences, and all without line ends and controls
  std::vector<std::string> sources;
  /// The main one first; then those that have anything to say: what attributes cost, or why sides
  /// changed.
  std::vector<Grid> tables;
  std::vector<std::string> caveats;
};

Summary summaryOf(const SideView& side, const Figures& figures);
Summary summaryOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                  double threshold);

/// Which method suits a mesh.
Summary summaryOf(const Question& question, const SideView& side, const Figures& figures);

/// The tables alone: a section for each group, best first, where leaders that cannot be told apart
/// are marked with '=' and one that is alone with '>'; or one for each group and new side, a row a
/// cell.
Grid gridOf(const SideView& side, const Figures& figures);
Grid gridOf(const std::vector<Changes>& changes);

/// Which methods suit a mesh, the best first; and what a program calls that uses the leaders.
std::vector<Grid> gridsOf(const Question& question, const std::vector<MethodAdvice>& advice);

/// What attributes cost, a row a cell that has a like one beside it; empty for none.
Grid costsOf(const SideView& side, const Figures& figures);

/// Why sides changed: a section a cell and new side, a row a function; empty for none.
Grid explanationOf(const std::vector<Changes>& changes);

/// Without the caveats, which belong on standard error and into no report of somebody else's.
std::string asText(const Summary& summary, bool colours);
std::string asMarkdown(const Summary& summary);

}  // namespace survey
