/// Files that are there as a whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace survey {

/// Writes beside the place and moves there when everything has reached the disk, with the
/// permissions of what it replaces. Throws std::system_error; what was there before stays then. A
/// pipe or a device is written to directly.
void writeWhole(const std::string& path, std::string_view content);

/// Throws std::system_error where writeWhole would find no place to write to; an empty path is
/// none.
void requirePlaceFor(const std::string& path);

/// What a file holds, of a gigabyte at most. Throws std::system_error.
std::string wholeFile(const std::string& path);

}  // namespace survey
