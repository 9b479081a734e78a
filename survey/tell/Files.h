/// Results as files for programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "survey/judge/Changes.h"
#include "survey/judge/Figures.h"

namespace survey {

/// All that was seen and what it says, in Google Benchmark's schema with a part of our own beside
/// it.
std::string resultJson(const Result& result);

/// What such a text holds. Throws std::runtime_error with a sentence for what is not ours, damaged,
/// or of a newer format.
Result resultOf(std::string_view text);

/// A side as a table, a row a cell: comma-separated, as RFC 4180 has it, with a row of headings.
/// Cells without a figure have empty fields, and the reason in the last.
std::string csvOf(const SideView& side, const Figures& figures);

/// As test runners write it (JUnit's XML): a suite for each part of the table, a case for each
/// cell. What makes workers fail, fails; what the driver does not run, or was not reached, is
/// skipped.
std::string junitOf(const SideView& side, const Figures& figures);

/// The same of comparisons: what is slower fails, what is undecided is skipped.
std::string junitOf(const std::vector<Changes>& changes);

}  // namespace survey
