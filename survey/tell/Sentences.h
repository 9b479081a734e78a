/// Results in sentences.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "survey/judge/Advice.h"
#include "survey/judge/Changes.h"
#include "survey/judge/Figures.h"

namespace survey {

// Answer.cpp: of one side.

/// Which method, for how much per call, with which attributes: a sentence for each primitive and
/// set of attributes.
std::vector<std::string> answerOf(const SideView& side, const Figures& figures);

// Advice.cpp: for a mesh.

/// "For 40 strips of 500 triangles that never change: multiDrawArrays, 0.213 ms a model ± 3 %;
/// displayLists cannot be told apart from it; then drawArrays, 1.31 times as long."
std::string answerOf(const Question& question, const std::vector<MethodAdvice>& advice);

/// What it was measured on: device, driver and machine.
std::string sourceOf(const SideView& side);

// Verdict.cpp: of several sides.

std::string_view inWords(Verdict verdict);

/// "7.1 % ± 0.8 % slower", of a ratio.
std::string changeInWords(const Interval& ratio);

/// "new is 7.1 % ± 0.8 % slower; worst: drawArrays, detail 64, 12 %."; a line a side.
std::vector<std::string> verdictOf(const std::vector<Changes>& changes, double threshold);

/// "drawArrays, detail 64: -4.31 % ± 0.81 % (n = 22)": a line for each cell that changed, or for
/// all of them together where none did.
std::string linesOf(const std::vector<Changes>& changes);

/// What they were measured on: a sentence for each, and one for each that is the same driver as the
/// first.
std::vector<std::string> sourcesOf(const std::vector<SideView>& sides);

/// Their names, with numbers where one was measured in several sittings: "old 1", "old 2", "new".
std::vector<std::string> labelsOf(const std::vector<SideView>& sides);

// Caveats.cpp: what has to be known beside the figures, a sentence each: how it ended, what the
// machine did, which cells are missing or fail, what is not known precisely.

std::vector<std::string> caveatsOf(const SideView& side, const Figures& figures);
std::vector<std::string> caveatsOf(const std::vector<SideView>& sides,
                                   const std::vector<Changes>& changes, double threshold);

/// On a cell of that index: why it has no figure, or what has to be known beside it; empty where
/// there is nothing to say.
std::string remarkOn(const SideView& side, std::size_t cell, bool hasFigure);

/// The same of a cell with a figure: beside it, whether some frames take far longer than others.
std::string remarkOn(const SideView& side, const CellFigure& figure);
std::string remarkOn(const Changes& changes, const CellChange& cell);

}  // namespace survey
