#include "survey/Report.h"

#include <cstdlib>
#include <filesystem>

#include "survey/Inputs.h"
#include "survey/Output.h"
#include "survey/page/Page.h"

namespace survey {

int report(const ReportCommand& command) {
  std::vector<NamedResult> results;
  for (const std::string& path : command.files) {
    results.push_back({std::filesystem::path(path).stem().string(), resultIn(path)});
  }
  return wrote(command.html, [&] { return pageOf(results); }) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace survey
