#include "survey/sitting/Workers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <system_error>
#include <tuple>

#include <fmt/format.h>
#include <sched.h>

#include "survey/sitting/Rounds.h"

namespace survey {
namespace {

/// So many workers in a row that fail to start are enough.
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

/// Whether the dynamic linker complains of what the side tells it to load: without that its
/// workers would be measured in the name of something else.
bool isOfSide(const std::string& complaint, const Side& side) {
  return std::any_of(
      side.environment.begin(), side.environment.end(), [&](const std::string& variable) {
        const std::string name = variable.substr(0, variable.find('='));
        return name == "LD_AUDIT" ? complaint.find("audit") != std::string::npos
                                  : complaint.find(" from " + name) != std::string::npos;
      });
}

}  // namespace

Workers::Workers(Record& record, const std::vector<std::string>& command,
                 const Interruption& interruption, Turns& turns)
    : record_(record),
      command_(command),
      interruption_(interruption),
      turns_(turns),
      core_(lastCore()),
      workers_(record.sides.size()),
      numbers_(record.sides.size()),
      hasYardstick_(core_.has_value()) {}

void Workers::need(std::size_t side) {
  for (int attempt = 1; !has(side); ++attempt) {
    try {
      workers_[side] = start(side);
      numbers_[side] = started_++;
    } catch (const WorkerFault&) {
      if (attempt == kMostFailedStarts) {
        throw;
      }
    }
  }
}

void Workers::endAll() {
  for (auto& worker : workers_) {
    worker.reset();
  }
}

std::optional<double> Workers::yardstick() {
  constexpr double kNanosecondsPerSecond = 1e9;
  constexpr std::chrono::microseconds kLeastTime{3000};
  try {
    if (!hasYardstick_ || (!yardstick_ && !setYardstick())) {
      hasYardstick_ = false;
      return std::nullopt;
    }
    const Frame frame = yardstick_->draw(kLeastTime, patienceFor(0));
    if (frame.primitives > 0 && frame.time() > 0 && !isDisturbed(frame)) {
      return kNanosecondsPerSecond * static_cast<double>(frame.primitives) /
             static_cast<double>(frame.time());
    }
  } catch (const WorkerFault&) {
    hasYardstick_ = false;
    yardstick_.reset();
  }
  return std::nullopt;
}

/// Calls for each vertex keep all parts of a core busy that hardware threads share.
bool Workers::setYardstick() {
  yardstick_ = start(0);
  return yardstick_->set({"immediateMode", "triStrip", 8, ""}, patienceFor(0)).hasFigure();
}

std::unique_ptr<Worker> Workers::start(std::size_t index) {
  Side& side = record_.sides[index];
  ChildProcess::Launch launch{command_, side.environment};
  launch.environment.push_back("SORVANTA_SURVEY_PADDING=" +
                               std::string(turns_.below(kMostPadding), 'x'));
  std::unique_ptr<Worker> worker;
  try {
    worker = std::make_unique<Worker>(index, launch, interruption_);
  } catch (const std::system_error& error) {
    throw WorkerFault(fmt::format("could not get a process ({}); end other programs, or raise the "
                                  "limits (ulimit -u, ulimit -n)",
                                  error.what()),
                      index);
  }
  // The first worker tries the devices; the others take the one that it found.
  const Driver driver =
      worker->begin({side.started() ? std::to_string(side.driver.number) : record_.settings.device,
                     record_.settings.onScreen, core_, turns_.below(std::uint64_t{1} << 32)},
                    patienceFor(0));
  for (const std::string& complaint : worker->linkersComplaints()) {
    if (isOfSide(complaint, side)) {
      throw WorkerFault(complaint, index);
    }
  }
  // The first worker, which tries the devices, may have loaded more files.
  const auto nameOf = [](const Driver& d) { return std::tie(d.device, d.renderer, d.version); };
  if (side.started() && nameOf(side.driver) != nameOf(driver)) {
    throw WorkerFault(
        fmt::format("found another driver than before: {}, {}", driver.renderer, driver.version),
        index);
  }
  side.driver = driver;
  return worker;
}

std::chrono::milliseconds Workers::patienceFor(unsigned int detail) const {
  constexpr double kUsualDetail = 512;
  const double scale = std::max(1.0, std::pow(detail / kUsualDetail, 2));
  return std::chrono::ceil<std::chrono::milliseconds>(
      std::chrono::duration<double>(scale * record_.settings.patience));
}

}  // namespace survey
