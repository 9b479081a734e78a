// For programs whose contexts are all without a window.

#include "platform/headless/EglWindowSystem.h"

const WindowSystem& windowSystem() {
  return eglWindowSystem();
}
