/// Text and tables as HTML.
#pragma once

#include <string>
#include <string_view>

#include "survey/tell/Grid.h"

namespace survey {

/// For content and for attributes in double quotes.
std::string escaped(std::string_view text);

/// A table element for each section, under a heading, and the notes as a list.
std::string htmlOf(const Grid& grid);

}  // namespace survey
