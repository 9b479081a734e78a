/// What the GL driver behind the current context offers, found out once.
#pragma once

#include <memory>
#include <string_view>

#include "platform/gl/PrimitiveRestart.h"
#include "platform/gl/VertexArrayFunctions.h"
#include "platform/gl/VertexArrayRange.h"

struct Driver {
  bool compiledVertexArrays = false;
  bool bufferObjects = false;
  bool debugMessages = false;
  bool multiDraw = false;          ///< glMultiDrawArrays
  bool multiDrawIndirect = false;  ///< the same with the draws in a buffer
  bool mapBufferRange = false;
  bool bufferStorage = false;  ///< buffers that stay mapped
  bool fences = false;
  PrimitiveRestart primitiveRestart = {};
  VertexArrayFunctions vertexArrayObjects = kNoVertexArrayFunctions;
  RangeProvider rangeProvider = RangeProvider::kNone;
  std::unique_ptr<VertexArrayRange> vertexArrayRange =
      makeVertexArrayRange(RangeProvider::kNone, 0);
};

/// The current driver; one that offers nothing until detectDriver has run.
const Driver& driver();

/// Whether the current context has that extension. An exported function is no proof of it.
bool hasExtension(std::string_view name);

/// Looks at the current context's version and extensions, and chooses how vertex array objects,
/// vertex array ranges and the restart of primitives are provided.
void detectDriver();

/// Provides ranges that way from now on; detectDriver has chosen what suits the driver best. No
/// range may be declared.
void forceRangeProvider(RangeProvider provider);
