// Preloaded into two programs that `alternate` runs at once: before every frame a program hands the
// turn to the other and waits for its own, so that frames of both meet the same machine, which may
// change its speed many times a second. Their clock runs $TURNS_CLOCK times as fast: 10 makes
// frames of 100 ms last 10. A frame's clear comes before what is measured of it, in a window and
// without one.
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace {

/// Returns at once when the other program has ended.
void waitForOther(int socket) {
  char byte = 0;
  recv(socket, &byte, 1, 0);
}

long clockRate() {
  static const char* const rate = std::getenv("TURNS_CLOCK");
  return rate != nullptr ? std::atol(rate) : 1;
}

}  // namespace

extern "C" int gettimeofday(timeval* __restrict tv, void* __restrict /*tz*/) noexcept {
  timespec time = {};
  clock_gettime(CLOCK_MONOTONIC, &time);
  const long microseconds = clockRate() * (1000000 * time.tv_sec + time.tv_nsec / 1000);
  *tv = {microseconds / 1000000, microseconds % 1000000};
  return 0;
}

extern "C" void glClear(unsigned int buffers) {
  static const auto clear = reinterpret_cast<void (*)(unsigned int)>(dlsym(RTLD_NEXT, "glClear"));
  static const char* const number = std::getenv("TURNS_SOCKET");
  static const int socket = number != nullptr ? std::atoi(number) : -1;
  static bool waitsForFirst = std::getenv("TURNS_SECOND") != nullptr;
  // An X server still has work to do after a swap, which must not fall into the other's frame.
  const timespec pause = {0, 2000000};
  nanosleep(&pause, nullptr);
  const char byte = 0;
  send(socket, &byte, 1, MSG_NOSIGNAL);
  waitForOther(socket);
  if (waitsForFirst) {  // both are up now, and the first has the turn
    waitsForFirst = false;
    waitForOther(socket);
  }
  clear(buffers);
}
