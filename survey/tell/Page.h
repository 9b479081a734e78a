/// Results as one page of HTML that needs nothing beside itself.
#pragma once

#include <string>
#include <vector>

#include "survey/data/Record.h"

namespace survey {

struct NamedResult {
  std::string name;  ///< the file's
  Result result;
};

/// Surveys stand side by side, each comparison in a section of its own, with its sides ranked side
/// by side below: what was measured on what, charts, tables, and what has to be known beside them.
std::string pageOf(const std::vector<NamedResult>& results);

}  // namespace survey
