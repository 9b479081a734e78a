/// What a frame took, by every clock there is: read right before and right after the measured
/// region, never inside it.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/FrameObserver.h"
#include "platform/gl/GL.h"
#include "survey/data/Record.h"

namespace survey {

class FrameClocks final : public FrameObserver {
 public:
  /// `core` is the one that the thread stays on, if it stays on one. Needs the context current.
  explicit FrameClocks(std::optional<unsigned int> core);
  FrameClocks(const FrameClocks&) = delete;
  FrameClocks& operator=(const FrameClocks&) = delete;

  void measuringBegins() override;
  void measuringEnded() override;

  /// Of the frame measured last, without its primitives. Waits for the GPU's answer. Where the
  /// driver's glFinish does not wait for the drawing, the frame ends when a pixel can be read.
  Frame lastFrame() const;

 private:
  /// Readings in nanoseconds, from a start of each clock's own.
  struct Readings {
    std::optional<std::int64_t> steal;
    std::int64_t cpu = 0;
    std::int64_t wait = 0;
    std::int64_t wall = 0;
  };

  /// The functions of GL_ARB_timer_query; null where the driver lacks it.
  struct TimerQueries {
    PFNGLGENQUERIESPROC generate = nullptr;
    PFNGLBEGINQUERYPROC begin = nullptr;
    PFNGLENDQUERYPROC end = nullptr;
    PFNGLGETQUERYOBJECTUI64VPROC result = nullptr;
  };

  /// Of all clocks but the hypervisor's, in the order of an end.
  Readings readings() const;
  std::int64_t waited() const;
  std::optional<std::int64_t> stolen() const;

  std::optional<unsigned int> core_;
  TimerQueries queries_;
  GLuint query_ = 0;  ///< 0: there are no timer queries
  Readings begin_;
  Readings end_;
  Readings drawn_;  ///< when a pixel could be read: all is drawn
};

}  // namespace survey
