/// What a survey measures: cells, each a method with a primitive, a detail and attributes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace survey {

/// By words, so that a result can be read whose methods this version does not know.
struct Cell {
  std::string method;
  std::string primitive;
  unsigned int detail;
  std::string with;  ///< the attributes' words, "-n -l0"; empty: vertices alone

  bool operator==(const Cell&) const = default;
};

/// `drawArrays/triStrip/64`, with attributes `drawArrays/triStrip/64/-n-l0`.
std::string nameOf(const Cell& cell);

/// The lists as a command line gives them.
struct CellLists {
  /// Or groups: "ten" that have always been there, those of "today", "static" and "stream" by what
  /// becomes of the vertices, those that a "core" profile has, and "all".
  std::string methods = "ten";
  std::string primitives = "triStrip";
  std::string details = "8,64,512";
  std::vector<std::string> with = {""};  ///< Sorvanta's own words, each list a set of attributes
};

/// Their product, details outermost, without repetitions. Throws Unusable for a word that names
/// nothing, for a detail out of 1 to 2048, and for nothing at all.
std::vector<Cell> cellsOf(const CellLists& lists);

}  // namespace survey
