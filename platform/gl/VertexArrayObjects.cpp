#include "platform/gl/VertexArrayObjects.h"

const VertexArrayObjects kAppleVertexArrayObjects = {glGenVertexArraysAPPLE, glBindVertexArrayAPPLE,
                                                     glDeleteVertexArraysAPPLE, true, true};

const VertexArrayObjects kArbVertexArrayObjects = {glGenVertexArrays, glBindVertexArray,
                                                   glDeleteVertexArrays, true, false};

const VertexArrayObjects kNoVertexArrayObjects = {[](GLsizei, GLuint*) {}, [](GLuint) {},
                                                  [](GLsizei, const GLuint*) {}, false, true};
