/// GLX as the window system of contexts in windows.
#pragma once

#include "platform/gl/WindowSystem.h"

const WindowSystem& glxWindowSystem();
