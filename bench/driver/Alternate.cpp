// Compares two commands run by run: alternate figure|time RUNS "COMMAND A" "COMMAND B".
// `time` runs them one after the other and takes their wall time in seconds. `figure` starts both
// and takes the first number in the last line that each prints; with take_turns.so preloaded they
// draw frames in turn. Either way B comes first every other time. Prints the medians, the median of
// the runs' ratios A/B, and the interquartile ranges of A, of B and of the ratios, over their
// medians, with the interval that holds the ratio with 95 %.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "survey/statistics/Averages.h"
#include "survey/statistics/Estimate.h"

namespace {

using survey::median;
using survey::quantile;

struct Process {
  pid_t id;
  FILE* output;
};

/// Starts a shell command with that end of the socket that carries the turns.
Process start(const char* command, int socket, bool second) {
  int ends[2];
  if (pipe(ends) != 0) {
    std::exit(EXIT_FAILURE);
  }
  const pid_t id = fork();
  if (id == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    setenv("TURNS_SOCKET", std::to_string(dup(socket)).c_str(), 1);
    if (second) {
      setenv("TURNS_SECOND", "", 1);
    }
    execl("/bin/sh", "sh", "-c", command, nullptr);
    _exit(127);
  }
  close(ends[1]);
  return {id, fdopen(ends[0], "r")};
}

/// Waits for its end; the first number in the last line.
double figureOf(const Process& process, const char* command) {
  char line[512];
  double figure = 0;
  while (std::fgets(line, sizeof line, process.output) != nullptr) {
    figure = std::strtod(line, nullptr);
  }
  std::fclose(process.output);
  int status = 0;
  waitpid(process.id, &status, 0);
  if (status != 0) {
    std::fprintf(stderr, "alternate: failed: %s\n", command);
    std::exit(EXIT_FAILURE);
  }
  return figure;
}

double secondsOf(const char* command) {
  const auto begin = std::chrono::steady_clock::now();
  figureOf(start(command, STDIN_FILENO, false), command);  // no turns to take
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

struct Pair {
  double first, second;
};

Pair figures(const char* earlier, const char* later) {
  int turns[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, turns) != 0) {
    std::exit(EXIT_FAILURE);
  }
  const Process first = start(earlier, turns[0], false);
  const Process second = start(later, turns[1], true);
  close(turns[0]);
  close(turns[1]);
  const double figure = figureOf(first, earlier);
  return {figure, figureOf(second, later)};
}

Pair times(const char* earlier, const char* later) {
  const double seconds = secondsOf(earlier);
  return {seconds, secondsOf(later)};
}

double spread(const std::vector<double>& values) {
  return 100 * (quantile(values, 0.75) - quantile(values, 0.25)) / median(values);
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc == 5 ? std::atoi(argv[2]) : 0;
  if (runs < 1) {
    std::fputs("usage: alternate figure|time RUNS \"COMMAND A\" \"COMMAND B\"\n", stderr);
    return EXIT_FAILURE;
  }
  std::vector<double> a, b, ratios;
  for (int i = 0; i < runs; ++i) {
    const auto measure = std::strcmp(argv[1], "time") == 0 ? times : figures;
    const bool swapped = i % 2 != 0;
    const Pair pair = swapped ? measure(argv[4], argv[3]) : measure(argv[3], argv[4]);
    a.push_back(swapped ? pair.second : pair.first);
    b.push_back(swapped ? pair.first : pair.second);
    ratios.push_back(a.back() / b.back());
  }
  const survey::Interval interval = survey::intervalOf(survey::estimateOf(ratios));
  std::printf(
      "%10.4g %10.4g  ratio %.3f  spread %.1f%% %.1f%%, of the ratio %.1f%%  from %.4f to %.4f\n",
      median(a), median(b), median(ratios), spread(a), spread(b), spread(ratios), interval.low,
      interval.high);
  return EXIT_SUCCESS;
}
