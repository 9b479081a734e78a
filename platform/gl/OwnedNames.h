/// GL objects whose names are made with them and deleted with them. The context must be current at
/// both ends.
#pragma once

#include "platform/gl/Driver.h"

/// A buffer object, without a store at first.
class Buffer {
 public:
  Buffer() { glGenBuffersARB(1, &name_); }
  ~Buffer() { glDeleteBuffersARB(1, &name_); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  GLuint name() const { return name_; }

 private:
  GLuint name_ = 0;
};

/// A vertex array object of whichever kind the driver has.
class VertexArrayObject {
 public:
  VertexArrayObject() { driver().vertexArrayObjects.generate(1, &name_); }
  ~VertexArrayObject() { driver().vertexArrayObjects.remove(1, &name_); }
  VertexArrayObject(const VertexArrayObject&) = delete;
  VertexArrayObject& operator=(const VertexArrayObject&) = delete;

  GLuint name() const { return name_; }

 private:
  GLuint name_ = 0;
};
