#include "platform/process/LoadedLibraries.h"

#include <cstddef>

#include <link.h>

std::vector<std::string> pathsOfLoadedLibraries() {
  std::vector<std::string> paths;
  dl_iterate_phdr(
      [](dl_phdr_info* library, std::size_t /*size*/, void* found) {
        static_cast<std::vector<std::string>*>(found)->emplace_back(library->dlpi_name);
        return 0;
      },
      &paths);
  return paths;
}
