#include "tests/support/XServer.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

XServer::XServer(int width, int height) {
  const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) {
    std::perror("pipe");
    std::abort();
  }
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string numberFile = std::to_string(pipeEnds[1]);
    close(pipeEnds[0]);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    // Without -noreset the server starts over when its last client leaves.
    execlp("Xvfb", "Xvfb", "-displayfd", numberFile.c_str(), "-noreset", "-nolisten", "tcp",
           "-screen", "0", screen.c_str(), nullptr);
    _exit(127);
  }
  close(pipeEnds[1]);
  display_ = ":";
  char character;
  while (read(pipeEnds[0], &character, 1) == 1 && character != '\n') {
    display_ += character;
  }
  close(pipeEnds[0]);
  if (display_ == ":") {
    std::fputs("Xvfb did not start\n", stderr);
    std::abort();
  }
}

XServer::~XServer() {
  kill();
}

void XServer::kill() {
  if (process_ > 0) {
    ::kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }
}
