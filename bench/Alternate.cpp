// Runs two commands in turn and compares them: alternate figure|time RUNS "COMMAND A" "COMMAND B".
// `figure` takes the first number in the last line that a command prints, `time` its wall time in
// seconds. Prints the medians, their ratio A/B, the ratio of each side's best run, and each side's
// spread, the interquartile range over the median. Running in turn cancels what drifts in the
// machine; the best runs are those that others on the machine disturbed least.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Outcome {
  double seconds = 0;
  double figure = 0;
};

Outcome run(const char* command) {
  const auto start = std::chrono::steady_clock::now();
  FILE* const pipe = popen(command, "r");
  char line[512];
  double figure = 0;
  while (pipe != nullptr && std::fgets(line, sizeof line, pipe) != nullptr) {
    figure = std::strtod(line, nullptr);
  }
  if (pipe == nullptr || pclose(pipe) != 0) {
    std::fprintf(stderr, "alternate: failed: %s\n", command);
    std::exit(EXIT_FAILURE);
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  return {seconds.count(), figure};
}

double quantile(const std::vector<double>& sorted, double part) {
  const double place = part * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (place - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 5 ? std::atoi(argv[2]) : 0;
  if (runs < 1) {
    std::fputs("usage: alternate figure|time RUNS \"COMMAND A\" \"COMMAND B\"\n", stderr);
    return EXIT_FAILURE;
  }
  const bool times = std::strcmp(argv[1], "time") == 0;
  std::vector<double> values[2];
  for (int i = 0; i < runs; ++i) {
    for (const int side : {0, 1}) {
      const Outcome outcome = run(argv[3 + side]);
      values[side].push_back(std::strcmp(argv[1], "time") == 0 ? outcome.seconds : outcome.figure);
    }
  }
  double medians[2] = {};
  double spreads[2] = {};
  double best[2] = {};

  for (const int side : {0, 1}) {
    std::sort(values[side].begin(), values[side].end());
    medians[side] = quantile(values[side], 0.5);
    best[side] = times ? values[side].front() : values[side].back();
    spreads[side] = (quantile(values[side], 0.75) - quantile(values[side], 0.25)) / medians[side];
  }
  std::printf("%10.4g %10.4g  ratio %.3f  of the best %.3f  spread %.1f%% %.1f%%\n", medians[0],
              medians[1], medians[0] / medians[1], best[0] / best[1], 100 * spreads[0],
              100 * spreads[1]);
  return EXIT_SUCCESS;
}
