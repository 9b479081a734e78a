#include "platform/gl/VertexArrayFunctions.h"

const VertexArrayFunctions kAppleVertexArrayFunctions = {
    glGenVertexArraysAPPLE, glBindVertexArrayAPPLE, glDeleteVertexArraysAPPLE, true, true};

const VertexArrayFunctions kArbVertexArrayFunctions = {glGenVertexArrays, glBindVertexArray,
                                                       glDeleteVertexArrays, true, false};

const VertexArrayFunctions kNoVertexArrayFunctions = {[](GLsizei, GLuint*) {}, [](GLuint) {},
                                                      [](GLsizei, const GLuint*) {}, false, true};
