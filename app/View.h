/// Where the benchmark draws: a window, or a buffer without one.
#pragma once

#include <string>

#include "platform/gl/WindowSystem.h"
#include "platform/services/Services.h"

constexpr int kInitialViewSide = 400;  ///< pixels

class View {
 public:
  virtual ~View() = default;

  /// Gives it a size in pixels, corrected to one that can be made, which a sentence on standard
  /// error tells.
  virtual void requestSize(int width, int height) = 0;
  /// Covers it with another window; returns why that cannot be, else nothing.
  virtual std::string cover() = 0;
  /// Draws the test object, frame after frame, until the run ends and the process with it.
  virtual void run() = 0;

  /// What a reader of the figures should know about where they come from; may be empty.
  virtual std::string remark() const = 0;
  virtual Services& services() = 0;
  virtual const WindowSystem& windowSystem() const = 0;
};

struct ViewSize {
  int width, height;
  bool operator==(const ViewSize&) const = default;
};

/// The nearest size that can be made.
ViewSize usableSize(ViewSize asked);

/// The same, which the test object is told, and standard error where it is not the one asked for.
ViewSize adoptSize(ViewSize asked);

/// Draws one frame of the test object and records it; ends the process when the time is over.
void drawFrame();
