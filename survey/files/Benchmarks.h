/// The part of a result that follows Google Benchmark's schema.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "survey/record/Record.h"

namespace survey {

nlohmann::ordered_json contextOf(const Record& record);

/// Adds a repetition for each block of each cell that was measured, and their aggregates, under
/// names that begin with the prefix.
void addBenchmarks(nlohmann::ordered_json& benchmarks, const Record& record,
                   const std::string& prefix);

}  // namespace survey
