// Our own cost in time: what the benchmark does beside the least that could do the same. Pairs are
// run in turn within one process and printed as ratios.
#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/null/Submissions.h"
#include "model/Terrain.h"

namespace {

constexpr int kReps = 10;  // models per call, as at the default detail

void timeSubmission(benchmark::State& state, const Submission& submission, bool ours) {
  PerformanceHistory history;
  SorvantaTest test(&history);
  prepare(submission, test);
  for ([[maybe_unused]] auto _ : state) {
    submit(submission, ours, test, kReps);
  }
}

constexpr unsigned int kLargeDetail = 2048;

void largeRebuild(benchmark::State& state) {
  PerformanceHistory history;
  SorvantaTest test(&history);
  test.setDetail(kLargeDetail - 1);
  test.setVertexColors(true);
  test.setPrimitive(kTriangles);
  for ([[maybe_unused]] auto _ : state) {
    test.setDetail(test.getDetail() == kLargeDetail ? kLargeDetail - 1 : kLargeDetail);
  }
}

/// Writes as many fresh bytes, and draws as many random numbers.
void largeRebuildFloor(benchmark::State& state) {
  const std::size_t vertices = std::size_t{6} * kLargeDetail * kLargeDetail;
  for ([[maybe_unused]] auto _ : state) {
    const std::size_t bytes = vertices * (kBytesPerVertex + sizeof(GLuint));
    auto* memory = static_cast<unsigned char*>(std::malloc(bytes));
    std::memset(memory, 1, bytes);
    benchmark::DoNotOptimize(memory);
    for (std::size_t i = 0; i < 3 * vertices; ++i) {
      int number = rand();
      benchmark::DoNotOptimize(number);
    }
    std::free(memory);
  }
}

void terrainRun(benchmark::State& state) {
  std::vector<float> field(std::size_t{2049} * 2049);
  for ([[maybe_unused]] auto _ : state) {
    srand(129);
    MakeTerrainFault(field.data(), 2049, 32, 0, 0, 1, 0);
    benchmark::ClobberMemory();
  }
}

void zeroFill(benchmark::State& state) {
  std::vector<float> field(std::size_t{2049} * 2049);
  for ([[maybe_unused]] auto _ : state) {
    std::fill(field.begin(), field.end(), 0.0F);
    benchmark::ClobberMemory();
  }
}

void setterCall(benchmark::State& state) {
  PerformanceHistory history;
  SorvantaTest test(&history);
  for ([[maybe_unused]] auto _ : state) {
    test.setPrimitive(kTriStrip);
  }
}

void trimmedMean(benchmark::State& state) {
  PerformanceHistory history;
  for (int i = 0; i < history.getQueueSize(); ++i) {
    history.addSample(static_cast<float>(i * 7 % 30));
  }
  for ([[maybe_unused]] auto _ : state) {
    float mean = history.meanDiscardingHighLow(2);
    benchmark::DoNotOptimize(mean);
  }
}

/// After the usual table: the median of each "ours" over that of its "bare".
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
        medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
      }
    }
  }

  void Finalize() override {
    std::cout << "\nTime as a multiple of the bare loop's or the floor's:\n";
    for (const auto& [name, time] : medians_) {
      const auto bare = medians_.find(name + "/bare");
      if (bare != medians_.end()) {
        std::printf("  %-32s %.3f\n", name.c_str(), time / bare->second);
      }
    }
  }

 private:
  std::map<std::string, double> medians_;
};

void addPair(const std::string& name, void (*ours)(benchmark::State&),
             void (*bare)(benchmark::State&), int iterations) {
  for (const auto& [suffix, function] : {std::pair{"", ours}, {"/bare", bare}}) {
    auto* const added = benchmark::RegisterBenchmark((name + suffix).c_str(), function);
    added->Unit(benchmark::kMillisecond);
    if (iterations != 0) {
      added->Iterations(iterations);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string defaults[] = {"--benchmark_repetitions=9", "--benchmark_report_aggregates_only=true",
                            "--benchmark_enable_random_interleaving=true",
                            "--benchmark_min_time=0.02"};
  for (std::string& option : defaults) {
    arguments.insert(arguments.begin() + 1, option.data());
  }
  for (const Submission& submission : submissions()) {
    benchmark::RegisterBenchmark(submission.name, timeSubmission, submission, true)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((std::string(submission.name) + "/bare").c_str(), timeSubmission,
                                 submission, false)
        ->Unit(benchmark::kMicrosecond);
  }
  addPair("rebuildDetail2048TrianglesColors", largeRebuild, largeRebuildFloor, 2);
  addPair("terrainSide2049", terrainRun, zeroFill, 0);
  benchmark::RegisterBenchmark("setterDetail64", setterCall)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("meanDiscardingHighLow", trimmedMean);

  auto count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
