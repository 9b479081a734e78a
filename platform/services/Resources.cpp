#include "platform/services/Resources.h"

#include <filesystem>
#include <system_error>

std::vector<std::string> resourcePaths(const std::string& name) {
  // The binary's own place, so that neither the working directory nor $PATH matters.
  std::error_code error;
  const std::filesystem::path binary = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) {
    return {};
  }
  const std::string directory = binary.parent_path().string();
  return {directory + "/resources/" + name, directory + "/" SORVANTA_DATA_FROM_BINARY "/" + name};
}
