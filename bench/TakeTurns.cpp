// Preloaded into two programs that `alternate` runs at once: after every frame a program hands the
// turn to the other and waits for its own, so that frames of both meet the same machine, which may
// change its speed many times a second. Their clock runs ten times as fast, which makes frames of
// 100 ms last 10. Frames are measured before their swap; the waiting is not.
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

}  // namespace

extern "C" int gettimeofday(timeval* __restrict tv, void* __restrict /*tz*/) noexcept {
  timespec time = {};
  clock_gettime(CLOCK_MONOTONIC, &time);
  const long microseconds = 10 * (1000000 * time.tv_sec + time.tv_nsec / 1000);
  *tv = {microseconds / 1000000, microseconds % 1000000};
  return 0;
}

extern "C" void glutSwapBuffers() {
  static const auto swap = reinterpret_cast<void (*)()>(dlsym(RTLD_NEXT, "glutSwapBuffers"));
  static const char* const number = std::getenv("TURNS_SOCKET");
  static const int socket = number != nullptr ? std::atoi(number) : -1;
  static bool waitsForFirst = std::getenv("TURNS_SECOND") != nullptr;
  swap();
  const char byte = 0;
  send(socket, &byte, 1, MSG_NOSIGNAL);
  waitForOther(socket);
  if (waitsForFirst) {  // both are up now, and the first has the turn
    waitsForFirst = false;
    waitForOther(socket);
  }
}
