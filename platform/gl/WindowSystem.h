/// What the window system knows about the current context.
#pragma once

/// Questions to one window system. Whatever is linked defines which one a program asks.
struct WindowSystem {
  const void* (*currentContext)();                 ///< identifies it; null where none is current
  void (*(*functionAddress)(const char* name))();  ///< of a GL function; null where there is none
  const char* addressFunction;                     ///< the name of what functionAddress calls
};

const WindowSystem& windowSystem();
