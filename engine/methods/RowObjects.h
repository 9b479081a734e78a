/// Drawing rows that have vertex array objects of their own.
#pragma once

#include <span>

#include "engine/methods/Repetition.h"
#include "platform/gl/Driver.h"

/// Draws all rows of `vertices` vertices `reps` times: per row one bind and one draw.
template <typename Record>
void drawRowObjects(std::span<const Record> records, GLenum mode, std::uint32_t vertices, int reps,
                    bool thrash) {
  const auto bind = driver().vertexArrayObjects.bind;
  const auto n = static_cast<GLsizei>(vertices);
  repeatModel(reps, thrash, [=] {
    for (const Record& record : records) {
      bind(record.vertexArrayObject);
      glDrawArrays(mode, 0, n);
    }
  });
}
