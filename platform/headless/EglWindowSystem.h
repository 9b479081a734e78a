/// EGL in the place of the window system, for contexts without a window.
#pragma once

#include "platform/gl/WindowSystem.h"

/// Needs a HeadlessContext.
const WindowSystem& eglWindowSystem();
