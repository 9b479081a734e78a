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
  const std::string page = pageOf(results);
  return wrote(command.html, [&] { return page; }) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace survey
