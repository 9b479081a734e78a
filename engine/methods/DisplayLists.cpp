/// The display-list method: one immediate-mode pass, compiled and replayed.
#include "engine/SorvantaTest.h"
#include "engine/methods/Repetition.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/DriverMemory.h"

void SorvantaTest::rebuildDisplayList() {
  deleteDisplayList();
  const ListCompilation compilation;
  displayList = glGenLists(1);
  glNewList(displayList, GL_COMPILE);
  compileImmediateModeRep();
  glEndList();
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
