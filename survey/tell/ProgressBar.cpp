#include "survey/tell/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace survey {
namespace {

/// Seldom enough for the terminal's own work not to matter.
constexpr std::chrono::milliseconds kBetweenUpdates{250};
constexpr std::size_t kBarWidth = 30;
constexpr std::size_t kUsualWidth = 80;

std::size_t terminalWidth() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualWidth;
}

}  // namespace

std::string progressLine(double part, double secondsLeft, std::string_view now, std::size_t width) {
  const auto full = static_cast<std::size_t>(std::lround(std::clamp(part, 0.0, 1.0) * kBarWidth));
  const std::string line =
      fmt::format("[{}{}] {:3.0f} s left  {}", std::string(full, '#'),
                  std::string(kBarWidth - full, '.'), std::ceil(secondsLeft), now);
  return line.substr(0, width);
}

ProgressBar::ProgressBar(bool wanted) : active(wanted && isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
  if (active) {
    fmt::print(stderr, "\r\033[K");
  }
}

void ProgressBar::show(double part, double secondsLeft, std::string_view now) {
  const auto time = std::chrono::steady_clock::now();
  if (active && time - last >= kBetweenUpdates) {
    // The last column stays free: some terminals wrap behind it.
    fmt::print(stderr, "\r{}\033[K", progressLine(part, secondsLeft, now, terminalWidth() - 1));
    std::fflush(stderr);
    last = time;
  }
}

}  // namespace survey
