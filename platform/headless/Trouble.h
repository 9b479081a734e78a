/// Why there is no device, or no context on one.
#pragma once

#include <stdexcept>

/// Its message is one or more sentences for the user: the cause and the cure. The first begins with
/// a small letter, as sentences after a program's name do; a list of devices may follow.
class HeadlessTrouble : public std::runtime_error {
  using std::runtime_error::runtime_error;
};
