#include "survey/worker/FrameClocks.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include <unistd.h>

#include "platform/gl/Driver.h"
#include "platform/gl/WindowSystem.h"

namespace survey {
namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
/// Reading a pixel takes no such part of a frame that is over.
constexpr std::int64_t kLatePart = 4;

std::int64_t nanoseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
}

template <typename Function>
void lookUp(Function& function, const char* name) {
  function = reinterpret_cast<Function>(windowSystem().functionAddress(name));
}

}  // namespace

FrameClocks::FrameClocks(std::optional<unsigned int> core) : core_(core) {
  if (!hasExtension("GL_ARB_timer_query")) {
    return;
  }
  lookUp(queries_.generate, "glGenQueries");
  lookUp(queries_.begin, "glBeginQuery");
  lookUp(queries_.end, "glEndQuery");
  lookUp(queries_.result, "glGetQueryObjectui64v");
  queries_.generate(1, &query_);
}

void FrameClocks::measuringBegins() {
  if (query_ != 0) {
    queries_.begin(GL_TIME_ELAPSED, query_);
  }
  begin_.steal = stolen();
  begin_.cpu = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
  begin_.wait = waited();
  begin_.wall = nanoseconds(CLOCK_MONOTONIC);
}

void FrameClocks::measuringEnded() {
  end_ = readings();
  end_.steal = stolen();
  if (query_ != 0) {
    queries_.end(GL_TIME_ELAPSED);
  }
  GLubyte pixel[4];
  glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
  drawn_ = readings();
  drawn_.steal = end_.steal;
}

FrameClocks::Readings FrameClocks::readings() const {
  Readings now;
  now.wall = nanoseconds(CLOCK_MONOTONIC);
  now.wait = waited();
  now.cpu = nanoseconds(CLOCK_THREAD_CPUTIME_ID);
  return now;
}

Frame FrameClocks::lastFrame() const {
  const auto between = [](const Readings& begin, const Readings& end) {
    Frame frame;
    frame.wall = end.wall - begin.wall;
    frame.cpu = end.cpu - begin.cpu;
    // The readings are not of one moment: what the thread computed, it did not wait for.
    frame.wait = std::clamp<std::int64_t>(end.wait - begin.wait, 0,
                                          std::max<std::int64_t>(0, frame.wall - frame.cpu));
    if (begin.steal && end.steal) {
      frame.steal = *end.steal - *begin.steal;
    }
    return frame;
  };
  Frame frame = between(begin_, end_);
  if (const Frame rest = between(end_, drawn_); rest.time() > frame.time() / kLatePart) {
    frame = between(begin_, drawn_);
    frame.late = rest.time();
  }
  if (query_ != 0) {
    GLuint64 elapsed = 0;
    queries_.result(query_, GL_QUERY_RESULT, &elapsed);
    frame.gpu = static_cast<std::int64_t>(elapsed);
  }
  return frame;
}

/// The second number of schedstat: how long the thread could have run but had no processor.
std::int64_t FrameClocks::waited() const {
  std::int64_t ran = 0;
  std::int64_t waited = 0;
  std::ifstream("/proc/thread-self/schedstat") >> ran >> waited;
  return waited;
}

/// What the hypervisor took from the core, in the steps of /proc/stat.
std::optional<std::int64_t> FrameClocks::stolen() const {
  if (!core_) {
    return std::nullopt;
  }
  std::ifstream statistics("/proc/stat");
  const std::string format =
      "cpu" + std::to_string(*core_) + " %*u %*u %*u %*u %*u %*u %*u %" SCNd64;
  for (std::string line; std::getline(statistics, line) && line.starts_with("cpu");) {
    std::int64_t ticks = 0;
    // NOLINTNEXTLINE(cert-err34-c): a line that does not fit is another processor's
    if (std::sscanf(line.c_str(), format.c_str(), &ticks) == 1) {
      return ticks * (kNanosecondsPerSecond / sysconf(_SC_CLK_TCK));
    }
  }
  return std::nullopt;
}

}  // namespace survey
