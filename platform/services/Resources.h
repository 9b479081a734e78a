/// Where the application's own files are.
#pragma once

#include <string>
#include <vector>

/// The places where the resource `name` may lie, the likeliest first: beside the running binary,
/// as in a build tree, and in the data directory of the tree that it is installed in.
std::vector<std::string> resourcePaths(const std::string& name);
