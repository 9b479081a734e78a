// Preloaded into a program, lets 50 ms pass whenever the program reads the time: a frame of at
// least 100 ms then has two passes, however slow the machine, and what a run does repeats exactly.
#include <sys/time.h>

extern "C" int gettimeofday(timeval* __restrict tv, void* __restrict /*tz*/) noexcept {
  static timeval time = {1000, 0};
  time.tv_usec += 50000;
  time.tv_sec += time.tv_usec / 1000000;
  time.tv_usec %= 1000000;
  *tv = time;
  return 0;
}
