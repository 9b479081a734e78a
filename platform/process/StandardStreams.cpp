#include "platform/process/StandardStreams.h"

#include <cstdlib>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

#include "platform/process/Sentences.h"

void occupyClosedStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) != -1) {
      continue;
    }
    // The lowest free descriptor is this one, as those below it are open.
    if (open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) != stream) {
      endWith("a standard stream is closed, and /dev/null cannot be opened in its place.");
    }
  }
}

void flushOutput() {
  std::cout.flush();
  if (!std::cout) {
    warn("standard output cannot be written; what the run has to say is lost.");
    std::_Exit(EXIT_FAILURE);
  }
}
