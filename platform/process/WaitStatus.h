/// What waitpid tells of a child process that has ended.
#pragma once

#include <string>

/// As "ended with status 3" or "died of SIGSEGV (Segmentation fault)".
std::string howItEnded(int waitStatus);
