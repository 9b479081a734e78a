/// How far a survey is, on a terminal.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace survey {

/// One line of at most `width` letters.
std::string progressLine(double part, double secondsLeft, std::string_view now, std::size_t width);

/// Keeps such a line up to date on standard error, and takes it away in the end. Does nothing where
/// that is no terminal.
class ProgressBar {
 public:
  explicit ProgressBar(bool wanted);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  void show(double part, double secondsLeft, std::string_view now);

 private:
  bool active;
  std::chrono::steady_clock::time_point last;
};

}  // namespace survey
