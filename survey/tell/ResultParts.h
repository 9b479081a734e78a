/// What the sources of result files have in common.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "survey/data/Record.h"

namespace survey {

// Benchmarks.cpp: the part that follows Google Benchmark's schema.

nlohmann::ordered_json contextOf(const SideView& side);

/// Adds a repetition for each block of each cell that was measured, and their aggregates, under
/// names that begin with the prefix.
void addBenchmarks(nlohmann::ordered_json& benchmarks, const SideView& side,
                   const std::string& prefix);

// FormatOne.cpp: files of format 1, which version 1.0 wrote: a record for each side, also where
// both drew in turns.

/// Our part of such a file. Throws nlohmann's exceptions.
Result resultOfFormatOne(const nlohmann::json& own);

}  // namespace survey
