#include "survey/sitting/Interruption.h"

#include <cerrno>
#include <system_error>

#include <sys/signalfd.h>
#include <unistd.h>

namespace survey {

Interruption::Interruption() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler != SIG_IGN) {
      sigaddset(&ending, number);
    }
  }
  sigprocmask(SIG_BLOCK, &ending, &original);
  descriptor = signalfd(-1, &ending, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "signalfd");
  }
}

Interruption::~Interruption() {
  // Nor must the second one end the program now, when all is written.
  for (signalfd_siginfo arrived{}; read(descriptor, &arrived, sizeof arrived) > 0;) {
  }
  close(descriptor);
  sigprocmask(SIG_SETMASK, &original, nullptr);
}

void Interruption::check() const {
  signalfd_siginfo arrived{};
  if (read(descriptor, &arrived, sizeof arrived) == sizeof arrived) {
    throw Interrupted{static_cast<int>(arrived.ssi_signo)};
  }
}

}  // namespace survey
