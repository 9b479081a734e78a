/// Turns the frames' figures into lines on standard output and into the exit status.
#pragma once

#include <cstdint>

/// What is reported and when; the command line sets it.
struct Report {
  bool terse = false;           ///< leave out the renderer line
  bool averageResults = false;  ///< one average at the end in place of a line per frame
  bool regress = false;         ///< compare the average with the reference
  float regressReference = 0;   ///< millions of primitives per second
  float tolerance = 0;          ///< a fraction of the reference: 0.05 allows 5 percent

  /// The recording period, in microseconds as getTime gives them.
  bool timedBenchmark = false;
  std::uint64_t benchmarkStartTime = 0;
  std::uint64_t benchmarkEndTime = 0;
  bool benchmarkStarted = false;    ///< the history has been cleared at the start time
  std::uint64_t lastPrintTime = 0;  ///< of the figure recorded last, or of the start

  float sum = 0;  ///< of the figures recorded since the start
  int samples = 0;

  /// Forgets the figures recorded so far.
  void clearFigures() {
    sum = 0;
    samples = 0;
  }
};

extern Report report;

/// Records the frame just drawn, once the recording period has begun, and prints its figure
/// unless only the average is wanted.
void recordPerf();

/// Prints the average if it is wanted and ends the process: status 1 when a regression check
/// failed, else 0.
[[noreturn]] void quit();
