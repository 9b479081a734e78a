// Runs two commands in turn and compares them: alternate figure|time RUNS "COMMAND A" "COMMAND B".
// `figure` takes the first number in the last line that a command prints, `time` its wall time in
// seconds. Prints the medians, the median of the pairs' ratios A/B, the ratio of each side's best
// run, and each side's spread, the interquartile range over the median. The two runs of a pair
// share whatever the machine was doing just then, and every other pair runs B first; the best runs
// are those that others on the machine disturbed least.
#include <algorithm>
#include <chrono>
#include <cmath>
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

double quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  const double place = part * static_cast<double>(values.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, values.size() - 1);
  return std::lerp(values[below], values[above], place - static_cast<double>(below));
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
  std::vector<double> ratios;
  for (int i = 0; i < runs; ++i) {
    for (const int turn : {0, 1}) {
      const int side = (i + turn) % 2;
      const Outcome outcome = run(argv[3 + side]);
      values[side].push_back(times ? outcome.seconds : outcome.figure);
    }
    ratios.push_back(values[0].back() / values[1].back());
  }
  const auto median = [](const auto& of) { return quantile(of, 0.5); };
  const auto best = [times](const auto& of) { return quantile(of, times ? 0 : 1); };
  const auto spread = [median](const auto& of) {
    return 100 * (quantile(of, 0.75) - quantile(of, 0.25)) / median(of);
  };
  std::printf("%10.4g %10.4g  ratio %.3f  of the best %.3f  spread %.1f%% %.1f%%\n",
              median(values[0]), median(values[1]), median(ratios),
              best(values[0]) / best(values[1]), spread(values[0]), spread(values[1]));
  return EXIT_SUCCESS;
}
