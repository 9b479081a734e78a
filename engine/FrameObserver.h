/// A look at a frame's measured region from outside.
#pragma once

/// Called outside the measured region, right before its first clock reading and right after its
/// last, with the frame's GL state in force.
class FrameObserver {
 public:
  virtual ~FrameObserver() = default;
  virtual void measuringBegins() = 0;
  virtual void measuringEnded() = 0;
};
