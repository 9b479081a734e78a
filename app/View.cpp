#include "app/View.h"

#include <algorithm>

#include "app/Application.h"
#include "app/Reporting.h"
#include "perf/Clock.h"
#include "platform/process/Sentences.h"

namespace {

std::string sides(ViewSize size) {
  return std::to_string(size.width) + " by " + std::to_string(size.height);
}

}  // namespace

/// X wraps sizes around at 16 bits and ends the program for a side of 0; drivers' buffers end at
/// their largest viewport.
ViewSize usableSize(ViewSize asked) {
  GLint most[2] = {};
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
  constexpr int kLargestSide = 8192;
  return {std::clamp(asked.width, 1, std::min(most[0], kLargestSide)),
          std::clamp(asked.height, 1, std::min(most[1], kLargestSide))};
}

ViewSize adoptSize(ViewSize asked) {
  const ViewSize size = usableSize(asked);
  if (size != asked) {
    warn("a view of " + sides(asked) + " pixels cannot be made; it will be " + sides(size) + '.');
  }
  vpt->setBounds(static_cast<unsigned int>(size.width), static_cast<unsigned int>(size.height));
  return size;
}

void drawFrame() {
  vpt->draw();
  recordPerf();
  if (report.timedBenchmark && getTime() > report.benchmarkEndTime) {
    quit();
  }
}
