/// Numbers and names as people read them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

constexpr double kMillion = 1e6;
constexpr double kPercent = 100;

/// Three digits that count: 183, 35.4, 7.02, 0.123; 1830 for 1834.
std::string threeDigits(double value);

/// Half of an interval's width beside its middle: "1.2 %", "12 %", "> 99 %"; "?" where it is not
/// known.
std::string spreadOf(const Interval& interval);

/// "MTri/s" or "MQuad/s" for a primitive's word.
std::string unitOf(const std::string& primitive);

/// Attributes in words: "vertices alone" or "with -n -l0".
std::string attributesInWords(const std::string& sent);

/// "Detail 64, triStrip, vertices alone": of cells whose rates can be ranked.
std::string groupInWords(unsigned int detail, const std::string& primitive,
                         const std::string& sent);

/// "1 cell", "3 cells".
std::string cellsInWords(std::size_t count);

/// "libGL.so (1a2b3c4d)": a path with as much of its build as tells it from others.
std::string fileInWords(const Library& library);

/// "a", "a and b", "a, b and c"; there must be one.
std::string listInWords(const std::vector<std::string>& names);

/// The names of those cells, with commas between them.
std::string namesOf(const std::vector<Cell>& cells, const std::vector<std::size_t>& indices);

}  // namespace survey
