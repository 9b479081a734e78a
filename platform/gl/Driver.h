/// What the GL driver behind the current context offers, found out once.
#pragma once

#include <memory>

#include "platform/gl/VertexArrayObjects.h"
#include "platform/gl/VertexArrayRange.h"

struct Driver {
  bool compiledVertexArrays = false;
  bool bufferObjects = false;
  VertexArrayObjects vertexArrayObjects = kNoVertexArrayObjects;
  RangeProvider rangeProvider = RangeProvider::kNone;
  std::unique_ptr<VertexArrayRange> vertexArrayRange =
      makeVertexArrayRange(RangeProvider::kNone, 0);
};

/// The current driver; one that offers nothing until detectDriver has run.
const Driver& driver();

/// Looks at the current context's extensions and chooses how vertex array objects and vertex array
/// ranges are provided.
void detectDriver();

/// Replaces the range provider that detectDriver chose, for tests. No range may be declared.
void forceRangeProvider(RangeProvider provider);
