/// An index that ends a strip and lets the next begin, as this driver has it.
#pragma once

#include "platform/gl/GL.h"

struct PrimitiveRestart {
  void (*enable)(GLuint index);  ///< null where there is none
  void (*disable)();
};

/// Of OpenGL 3.1.
extern const PrimitiveRestart kCorePrimitiveRestart;
/// GL_NV_primitive_restart.
extern const PrimitiveRestart kNvPrimitiveRestart;
