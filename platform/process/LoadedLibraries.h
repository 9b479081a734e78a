/// The shared libraries of this process.
#pragma once

#include <string>
#include <vector>

/// Their paths, in the order in which they were loaded.
std::vector<std::string> pathsOfLoadedLibraries();
