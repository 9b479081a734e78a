#include "platform/process/WaitStatus.h"

#include <cstring>

#include <sys/wait.h>

std::string howItEnded(int waitStatus) {
  if (!WIFSIGNALED(waitStatus)) {
    return "ended with status " + std::to_string(WEXITSTATUS(waitStatus));
  }
  const int number = WTERMSIG(waitStatus);
  const char* const name = sigabbrev_np(number);
  return name == nullptr ? "died of signal " + std::to_string(number)
                         : std::string("died of SIG") + name + " (" + sigdescr_np(number) + ')';
}
