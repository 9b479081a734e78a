/// What the current context calls itself.
#pragma once

#include <string>

#include "platform/gl/GL.h"

/// The text of GL_RENDERER, GL_VERSION or the like; empty where the context has none.
std::string glText(GLenum name);

/// Renderer and version, as in "llvmpipe (LLVM 15.0.6, 256 bits), 4.5 Mesa 22.3.6".
std::string rendererLine();
