/// What graphics devices and renderers call themselves.
#pragma once

#include <string_view>

/// Whether `text` contains `part`, whatever the case of the letters.
bool mentions(std::string_view text, std::string_view part);

/// Whether a renderer of this name (GL_RENDERER) computes on the processor. That counts for layered
/// and virtual drivers, too, whose names contain that of the renderer below them.
bool isSoftwareRenderer(std::string_view name);
