/// Tells when the driver has finished the calls made so far (GL_ARB_sync).
#pragma once

#include "platform/gl/GL.h"

class Fence {
 public:
  Fence() = default;
  ~Fence() { remove(); }
  Fence(const Fence&) = delete;
  Fence& operator=(const Fence&) = delete;

  /// Puts it behind all calls made so far.
  void set();
  /// Returns when the calls before it are done, at once where it was never set, and removes it.
  void pass();

 private:
  void remove();

  GLsync sync_ = nullptr;
};
