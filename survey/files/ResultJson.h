/// A survey as JSON in the schema of Google Benchmark, so that the tools around that read it; what
/// it has no place for stands under "sorvanta", from where the record is read back.
///
/// A repetition is a block, an iteration one drawing of the whole model. The times are as measured;
/// the machine's moves are taken out only in figures. Cells without a figure are no entries among
/// the benchmarks, as tools take an entry's times for granted; they stand under "without".
#pragma once

#include <string>
#include <string_view>

#include "survey/record/Record.h"

namespace survey {

std::string resultJson(const Record& record);

/// Throws std::runtime_error, with a sentence without the file's name, for a text that is no JSON,
/// or not of this program.
Record recordOf(std::string_view text);

}  // namespace survey
