/// Vertex array objects as this driver has them.
#pragma once

#include "platform/gl/GL.h"

/// The functions of one implementation. Calling through the table costs what a call of the
/// exported function costs, so that a bind may be measured.
struct VertexArrayFunctions {
  void (*generate)(GLsizei n, GLuint* names);
  void (*bind)(GLuint name);  ///< 0 is the default object
  void (*remove)(GLsizei n, const GLuint* names);
  bool available;            ///< false: there is the default object only
  bool acceptsClientMemory;  ///< objects may hold pointers to client memory, not to buffers alone
};

/// GL_APPLE_vertex_array_object.
extern const VertexArrayFunctions kAppleVertexArrayFunctions;
/// GL_ARB_vertex_array_object.
extern const VertexArrayFunctions kArbVertexArrayFunctions;
/// For drivers with neither: binding the default object, always bound then, does nothing.
extern const VertexArrayFunctions kNoVertexArrayFunctions;
