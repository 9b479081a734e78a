// To be preloaded: makes a driver slower by a known part, in processor time of the submitting
// thread. $SLOW_FLUSH percent of what has passed since the last glFlush are burnt in each glFlush;
// where glCallList was called in between, $SLOW_LIST percent on top.
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>

namespace {

using Function = void (*)();
using CallList = void (*)(unsigned int);
using Clear = void (*)(unsigned int);

double now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double partOf(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? std::atof(value) / 100 : 0;
}

template <typename Pointer>
Pointer next(const char* name) {
  return reinterpret_cast<Pointer>(dlsym(RTLD_NEXT, name));
}

bool listed = false;
double owed = 0;  // seconds
double last = now();

}  // namespace

extern "C" void glCallList(unsigned int list) {
  static const auto call = next<CallList>("glCallList");
  listed = true;
  call(list);
}

extern "C" void glClear(unsigned int buffers) {
  static const auto clear = next<Clear>("glClear");
  clear(buffers);
  listed = false;
  last = now();
}

extern "C" void glFlush() {
  static const auto call = next<Function>("glFlush");
  static const double ofAll = partOf("SLOW_FLUSH");
  static const double ofLists = partOf("SLOW_LIST");
  call();
  const double end = now();
  owed += (end - last) * (ofAll + (listed ? ofLists : 0));
  for (last = end; last < end + owed;) {
    last = now();
  }
  owed -= last - end;  // what was burnt too much counts next time
  listed = false;
}
