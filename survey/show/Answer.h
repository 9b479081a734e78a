/// The result in sentences.
#pragma once

#include <string>
#include <vector>

#include "survey/figures/Figures.h"

namespace survey {

/// Which method, for how much per call, with which attributes: a sentence for each primitive and
/// set of attributes.
std::string answerOf(const Record& record, const Figures& figures);

/// What it was measured on: device, driver and machine.
std::string sourceOf(const Record& record);

/// What has to be known beside the figures, a sentence each: how it ended, what the machine did,
/// which cells are missing or not as precise as asked for.
std::vector<std::string> caveatsOf(const Record& record, const Figures& figures);

/// How many frames others disturbed, and whether those are too many.
std::string disturbanceInWords(std::size_t disturbed, std::size_t frames);

}  // namespace survey
