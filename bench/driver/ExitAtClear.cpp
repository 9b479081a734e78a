// Preloaded into a program, ends it at the second clear of its window: the first is that of the
// set-up, the second that of the first frame. So the program's wall time is its start-up.
#include <GL/gl.h>
#include <dlfcn.h>
#include <unistd.h>

extern "C" void glClear(GLbitfield mask) {
  static int clears = 0;
  reinterpret_cast<void (*)(GLbitfield)>(dlsym(RTLD_NEXT, "glClear"))(mask);
  if (++clears == 2) {
    glFinish();
    _exit(0);
  }
}
