/// The current context's own table of entry points: calls made through it skip the GL library's
/// search for the current context.
#pragma once

#include "platform/gl/GL.h"

/// Identifies the renderer behind a context. Entries take it first.
using RendererHandle = const void*;

/// One entry of the table. The handle is for the table's contract alone and costs nothing.
template <typename Function>
class ContextEntry;

template <typename... Arguments>
class ContextEntry<void(Arguments...)> {
 public:
  using Function = void (*)(Arguments...);

  // NOLINTNEXTLINE(google-explicit-constructor): an entry is a function with one more argument
  ContextEntry(Function function) : function_(function) {}
  void operator()(RendererHandle /*renderer*/, Arguments... arguments) const {
    function_(arguments...);
  }

 private:
  Function function_;
};

/// Begin, End, Vertex3fv and the others that the macro paths use, named without the prefix "gl".
/// A new table calls the exported functions.
struct ContextTable {
#define GL_DISPATCHED(name, parameters, arguments) ContextEntry<void parameters> name = &gl##name;
#include "platform/gl/EntryPoints.def"
};

struct ContextObject {
  RendererHandle renderer = nullptr;
  /// Null where the table is the driver's own; else the driver hides it, this one holds what the
  /// window system's look-up gives, and this is the look-up's name.
  const char* lookedUpWith = nullptr;
  ContextTable table;
};

using CGLContextObj = const ContextObject*;

/// The current context, which must exist. Its table is filled once per context, on the first call
/// made with it current; that call must lie outside glBegin/glEnd and list compilation, where the
/// GL library has other tables in force. Later calls cost a look at which context is current.
CGLContextObj CGLGetCurrentContext();
