/// Whether what the context drew may count.
#pragma once

#include <string>

namespace survey {

/// What went wrong on the current context, the process's only one, since the last call: it is lost,
/// or there was a GL error. Without an end, as "the driver lost its context"; empty where all is
/// well.
std::string contextTrouble();

}  // namespace survey
