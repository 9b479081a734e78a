#include "survey/measure/Station.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <string>

#include <sched.h>

namespace survey {
namespace {

/// So many workers in a row that do not come up end the survey.
constexpr int kMostFailedStarts = 3;
/// Environments of different lengths put the stack elsewhere: not always at the same lucky place.
constexpr std::uint64_t kMostPadding = 4096;

/// The last processor this process may use: the first ones often serve interrupts.
std::optional<unsigned int> lastCore() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) {
    return std::nullopt;
  }
  for (unsigned int core = CPU_SETSIZE; core-- > 0;) {
    if (CPU_ISSET(core, &allowed)) {
      return core;
    }
  }
  return std::nullopt;
}

/// Whether the dynamic linker complains of what the launch tells it to load: without that its
/// workers would be measured in the name of something else.
bool isOfLaunch(const std::string& complaint, const Launch& launch) {
  return std::any_of(
      launch.environment.begin(), launch.environment.end(), [&](const std::string& variable) {
        const std::string name = variable.substr(0, variable.find('='));
        return name == "LD_AUDIT" ? complaint.find("audit") != std::string::npos
                                  : complaint.find(" from " + name) != std::string::npos;
      });
}

/// Keeps this thread on a core while it lives.
class Stay {
 public:
  explicit Stay(unsigned int core) {
    sched_getaffinity(0, sizeof before_, &before_);
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(core, &cores);
    sched_setaffinity(0, sizeof cores, &cores);
  }
  Stay(const Stay&) = delete;
  Stay& operator=(const Stay&) = delete;
  ~Stay() { sched_setaffinity(0, sizeof before_, &before_); }

 private:
  cpu_set_t before_{};
};

double threadSeconds() {
  constexpr double kNanosecondsPerSecond = 1e9;
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) +
         static_cast<double>(time.tv_nsec) / kNanosecondsPerSecond;
}

/// Steps of a calculation in which each needs the one before, per second of this thread: others may
/// have the core meanwhile, as they may during a frame, which is repeated then.
double stepsPerSecond() {
  constexpr int kSteps = 2'000'000;
  const double begin = threadSeconds();
  volatile std::uint64_t result = 1;
  std::uint64_t state = result;
  for (int i = 0; i < kSteps; ++i) {
    state = state * 6364136223846793005U + 1442695040888963407U;  // Knuth's MMIX
  }
  result = state;
  return kSteps / (threadSeconds() - begin);
}

}  // namespace

Station::Station(const Settings& settings)
    : settings_(settings), turns_(settings.seed), core_(lastCore()) {}

double Station::elapsed() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - began_).count();
}

double Station::secondsLeft() const {
  return settings_.seconds - elapsed();
}

std::unique_ptr<WorkerProcess> Station::start(const Launch& launch, Record& record) {
  for (int attempt = 1;; ++attempt) {
    try {
      Launch padded = launch;
      padded.environment.push_back("SORVANTA_SURVEY_PADDING=" +
                                   std::string(turns_.below(kMostPadding), 'x'));
      auto worker = std::make_unique<WorkerProcess>(padded, interruption_);
      // The first worker tries the devices; the others take the one that it found.
      const bool found = !record.driver.renderer.empty();
      const auto driver = worker->ask<Driver>(
          Begin{found ? std::to_string(record.driver.number) : settings_.device, settings_.onScreen,
                core_, turns_.below(std::uint64_t{1} << 32)},
          patienceFor(0));
      for (const std::string& complaint : worker->linkersComplaints()) {
        if (isOfLaunch(complaint, launch)) {
          throw WorkerFault(complaint);
        }
      }
      record.driver = driver;
      ++started_;
      return worker;
    } catch (const WorkerFault&) {
      if (attempt == kMostFailedStarts) {
        throw;
      }
    }
  }
}

std::chrono::milliseconds Station::patienceFor(unsigned int detail) const {
  constexpr double kUsualDetail = 512;
  const double scale = std::max(1.0, std::pow(detail / kUsualDetail, 2));
  return std::chrono::ceil<std::chrono::milliseconds>(
      std::chrono::duration<double>(scale * settings_.patience));
}

void Station::noteSpeed(Record& record) const {
  if (core_) {
    const Stay stay(*core_);
    record.speeds.push_back(stepsPerSecond());
  }
}

}  // namespace survey
