/// The other program in the binary: what a process does that the controller started. Whatever is
/// linked defines these: the engine on a context without a window, or a test's own.
#pragma once

#include <string>

#include "platform/process/Descriptor.h"

namespace survey {

/// Serves until the controller closes the socket. The exit status.
int work(const Descriptor& socket);

/// A line per device that workers can draw on, without the last line break. Throws
/// std::runtime_error where there is no way to ask.
std::string deviceList();

}  // namespace survey
