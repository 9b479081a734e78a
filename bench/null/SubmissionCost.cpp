// Draws the model with one submission: submission_cost NAME ours|bare REPETITIONS. Run under a
// counter of instructions; the difference of two runs leaves the set-up out. Without arguments it
// prints the names.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/null/Submissions.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    for (const Submission& submission : submissions()) {
      std::puts(submission.name);
    }
    return 0;
  }
  for (const Submission& submission : submissions()) {
    if (std::strcmp(submission.name, argv[1]) == 0) {
      PerformanceHistory history;
      SorvantaTest test(&history);
      prepare(submission, test);
      submit(submission, std::strcmp(argv[2], "ours") == 0, test, std::atoi(argv[3]));
      return 0;
    }
  }
  std::fprintf(stderr, "submission_cost: there is no submission called %s\n", argv[1]);
  return 1;
}
