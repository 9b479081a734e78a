/// Immediate-mode calls, made directly or through the context's table. Both kinds offer begin, end
/// and a call per attribute.
#pragma once

#include "platform/gl/ContextTable.h"

/// Through the exported functions; the two parameters choose between names of the same function.
template <auto sendSecondaryColor, auto sendMultiTexCoord>
struct DirectCalls {
  void begin(GLenum mode) const { glBegin(mode); }
  void end() const { glEnd(); }
  void normal(const GLfloat* v) const { glNormal3fv(v); }
  void color(const GLfloat* v) const { glColor3fv(v); }
  void secondaryColor(const GLfloat* v) const { sendSecondaryColor(v); }
  void texCoord(const GLfloat* v) const { glTexCoord2fv(v); }
  void multiTexCoord(GLenum unit, const GLfloat* v) const { sendMultiTexCoord(unit, v); }
  void vertex(const GLfloat* v) const { glVertex3fv(v); }
};

/// Through the table of the context that is current when they are made. With `const ContextTable&`
/// as `Entries` each entry is read at the moment of its call; with `ContextTable` those for
/// vertices are copies, and only Begin and End are read for every strip.
template <typename Entries>
class TableCalls {
 public:
  void begin(GLenum mode) const { context_->table.Begin(renderer_, mode); }
  void end() const { context_->table.End(renderer_); }
  void normal(const GLfloat* v) const { entries_.Normal3fv(renderer_, v); }
  void color(const GLfloat* v) const { entries_.Color3fv(renderer_, v); }
  void secondaryColor(const GLfloat* v) const { entries_.SecondaryColor3fv(renderer_, v); }
  void texCoord(const GLfloat* v) const { entries_.TexCoord2fv(renderer_, v); }
  void multiTexCoord(GLenum unit, const GLfloat* v) const {
    entries_.MultiTexCoord2fv(renderer_, unit, v);
  }
  void vertex(const GLfloat* v) const { entries_.Vertex3fv(renderer_, v); }

 private:
  CGLContextObj context_ = CGLGetCurrentContext();
  RendererHandle renderer_ = context_->renderer;
  Entries entries_ = context_->table;
};
