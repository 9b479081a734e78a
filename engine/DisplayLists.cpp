/// The display-list method: one immediate-mode pass, compiled and replayed.
#include <utility>

#include "engine/Repetition.h"
#include "engine/SorvantaTest.h"
#include "platform/gl/ContextTable.h"

void SorvantaTest::rebuildDisplayList() {
  // Compilation goes through the exported functions: while it lasts the GL library has other
  // tables in force than the one that the macro path knows.
  const bool macros = std::exchange(useMacros, false);
  deleteDisplayList();
  displayList = glGenLists(1);
  glNewList(displayList, GL_COMPILE);
  drawImmediateModeRep();
  glEndList();
  useMacros = macros;
}

void SorvantaTest::drawDisplayList(int reps) {
  const GLuint list = displayList;
  if (useMacros) {
    const CGLContextObj context = CGLGetCurrentContext();
    repeatModel(reps, thrash,
                [=, callList = context->table.CallList, renderer = context->renderer] {
                  callList(renderer, list);
                });
  } else {
    repeatModel(reps, thrash, [=] { glCallList(list); });
  }
}

void SorvantaTest::deleteDisplayList() {
  if (displayList != 0) {
    glDeleteLists(displayList, 1);
  }
  displayList = 0;
}
