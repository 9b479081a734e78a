#include "platform/gl/FixedFunction.h"

#include <algorithm>
#include <iterator>

#include "platform/gl/GL.h"
#include "platform/gl/RendererLine.h"

namespace {

/// Takes the pending errors, of which a driver keeps only a few; whether there was one.
bool takeErrors() {
  constexpr int kMost = 16;  // a context that is lost has one for every question
  int taken = 0;
  while (taken < kMost && glGetError() != GL_NO_ERROR) {
    ++taken;
  }
  return taken > 0;
}

bool hasFixedFunction() {
  takeErrors();
  constexpr GLfloat kColor[] = {0.25F, 0.5F, 0.75F, 1};
  GLfloat color[4] = {};
  glMatrixMode(GL_MODELVIEW);
  glBegin(GL_POINTS);
  glColor4f(kColor[0], kColor[1], kColor[2], kColor[3]);
  glEnd();
  glGetFloatv(GL_CURRENT_COLOR, color);
  return !takeErrors() && std::equal(std::begin(kColor), std::end(kColor), color);
}

}  // namespace

std::string whyNoFixedFunction() {
  return hasFixedFunction()
             ? ""
             : "this OpenGL context (" + rendererLine() +
                   ") has no fixed-function pipeline, which all methods need; a compatibility "
                   "profile is needed. Unset what asks for another, such as "
                   "MESA_GL_VERSION_OVERRIDE.";
}
