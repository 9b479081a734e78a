#include "platform/gl/PrimitiveRestart.h"

const PrimitiveRestart kCorePrimitiveRestart = {[](GLuint index) {
                                                  glPrimitiveRestartIndex(index);
                                                  glEnable(GL_PRIMITIVE_RESTART);
                                                },
                                                [] { glDisable(GL_PRIMITIVE_RESTART); }};

const PrimitiveRestart kNvPrimitiveRestart = {
    [](GLuint index) {
      glPrimitiveRestartIndexNV(index);
      glEnableClientState(GL_PRIMITIVE_RESTART_NV);
    },
    [] { glDisableClientState(GL_PRIMITIVE_RESTART_NV); }};
