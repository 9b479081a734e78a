/// A survey as JSON in the schema of Google Benchmark, so that the tools around that read it; what
/// it has no place for stands under "sorvanta", from where the record is read back.
///
/// A repetition is a block, an iteration one drawing of the whole model. The times are as measured;
/// the machine's moves are taken out only in figures. Cells without a figure are no entries among
/// the benchmarks, as tools take an entry's times for granted; they stand under "without". Of a
/// comparison each side's entries begin with its name, so that `compare.py filters` takes them
/// apart.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "survey/record/Comparison.h"

namespace survey {

std::string resultJson(const Record& record);
std::string resultJson(const Comparison& comparison);

/// What one file holds.
using Result = std::variant<Record, Comparison>;

/// Throws std::runtime_error, with a sentence without the file's name, for a text that is no JSON,
/// or not of this program.
Result resultOf(std::string_view text);

}  // namespace survey
