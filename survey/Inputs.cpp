#include "survey/Inputs.h"

#include <stdexcept>
#include <system_error>

#include <fmt/format.h>

#include "survey/files/WholeFile.h"
#include "survey/plan/Words.h"

namespace survey {

Result resultIn(const std::string& path) {
  try {
    return resultOf(wholeFile(path));
  } catch (const std::system_error& error) {
    throw Unusable(fmt::format("{} cannot be read: {}", path, error.code().message()));
  } catch (const std::runtime_error& error) {
    throw Unusable(fmt::format("{}: {}", path, error.what()));
  }
}

}  // namespace survey
