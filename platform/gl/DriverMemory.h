/// Memory that the driver gives, and what happens when it has none. A figure of draws from
/// an empty buffer would mean nothing.
#pragma once

#include <cstddef>

#include "platform/gl/GL.h"

/// Larger buffers are not made on any driver: counts and sizes are GLsizei, and drivers have
/// crashed drawing from larger ones.
constexpr GLuint kLargestBuffer = 0x7FFFFFFF;  // bytes

/// Gives the buffer bound to `target` a store of `size` bytes, with that content unless `data` is
/// null, or ends the program.
void makeStore(GLenum target, std::size_t size, const void* data, GLenum usage);

/// Ends the program with a sentence and status 1, where a buffer of that size cannot be had.
[[noreturn]] void endWithoutBuffer(std::size_t bytes);

/// Watches over the compilation of a display list, from before glNewList until after glEndList: an
/// error ends the program with a sentence and status 1. Drivers without the memory for a list have
/// crashed when they went on, some of them within the call that met the error, so those that can
/// tell of an error as it happens (GL_KHR_debug) do. Out of memory is noticed with all of them.
class ListCompilation {
 public:
  ListCompilation();
  ~ListCompilation();
  ListCompilation(const ListCompilation&) = delete;
  ListCompilation& operator=(const ListCompilation&) = delete;

  /// To be called now and then, between glEnd and glBegin.
  static void check();
};
