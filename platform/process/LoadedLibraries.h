/// The shared libraries of this process.
#pragma once

#include <string>
#include <vector>

struct LoadedLibrary {
  std::string path;
  /// Its ELF build-id, in hexadecimal digits; where it has none, its size and when it was changed,
  /// with a blank between; empty where nothing is known.
  std::string build;
};

/// In the order in which they were loaded, without the program itself and what is no file.
std::vector<LoadedLibrary> loadedLibraries();
