/// DRM render nodes: the files by which programs reach graphics cards without a display.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The nodes of this machine, in the order of their names; none where there is no such directory.
std::vector<std::filesystem::path> renderNodes(const std::filesystem::path& directory = "/dev/dri");

/// Why this process may not open the node, and the cure, as a sentence; empty where it may, or
/// where there is no such node.
std::string whyForbidden(const std::filesystem::path& node);

/// The name of the kernel's driver behind the node, as "amdgpu"; empty where that is unknown.
std::string kernelDriver(const std::filesystem::path& node);
