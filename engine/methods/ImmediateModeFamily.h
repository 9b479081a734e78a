/// The specialised immediate-mode emitters: one straight-line vertex loop per combination of
/// attributes, called directly (DrawImmediateMode, DrawImmediateModeNor, ...,
/// DrawImmediateModeNorColSecT0T1T2) or through the current context's table (the same names with
/// "Macro" appended). The method immediateMode does not use them: it has the generic emitter, which
/// draws every layout and sends all eight texture units; bench/ compares the two.
///
/// Every emitter draws the strip layout: `detail` strips of 2 * detail + 2 vertices with the
/// OpenGL mode `mode`. Per vertex it sends, in this order, the attributes of its name: normal,
/// colour, secondary colour, texture coordinates by unit, and then the position. It reads only the
/// arrays that it sends, so the others may be null; `texCoords` points to the arrays of units 0 to
/// 2. A current context is needed, and must stay current for the whole call.
#pragma once

#include "model/Coordinates.h"

#define SORVANTA_EMITTER_PARAMETERS                                               \
  unsigned long detail, unsigned long mode, GLCoord3 *vertices, GLCoord3 *colors, \
      GLCoord3 *secondaryColors, GLCoord3 *normals, GLCoord2 **texCoords

#define SORVANTA_EMITTER(index, parts)                        \
  void DrawImmediateMode##parts(SORVANTA_EMITTER_PARAMETERS); \
  void DrawImmediateMode##parts##Macro(SORVANTA_EMITTER_PARAMETERS);
#include "engine/methods/ImmediateModeEmitters.def"

/// Calls the direct emitter with that index, an OR of 1 for normals, 2 for colours, 4 for secondary
/// colours, and 8, 16 and 32 for texture units 0, 1 and 2. False, and nothing drawn, above 63.
bool DoImmediateMode(unsigned long variant, SORVANTA_EMITTER_PARAMETERS);

/// The same over the emitters that call through the current context's table.
bool DoImmediateModeMacro(unsigned long variant, SORVANTA_EMITTER_PARAMETERS);
