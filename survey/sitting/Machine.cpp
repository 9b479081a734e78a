#include "survey/sitting/Machine.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string_view>

#include <fmt/format.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace survey {
namespace {

namespace fs = std::filesystem;

const fs::path kProcessors = "/sys/devices/system/cpu";

/// The first line; empty for a file that cannot be read.
std::string lineOf(const fs::path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

std::vector<fs::path> entriesOf(const fs::path& directory) {
  std::error_code unreadable;
  std::vector<fs::path> entries;
  for (const auto& entry : fs::directory_iterator(directory, unreadable)) {
    entries.push_back(entry.path());
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

/// The values of all lines "key : value" of /proc/cpuinfo.
std::vector<std::string> cpuinfo(std::string_view key) {
  std::ifstream file("/proc/cpuinfo");
  std::vector<std::string> values;
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(':');
    if (colon != std::string::npos && line.starts_with(key) &&
        line.find_first_not_of(" \t", key.size()) == colon) {
      values.push_back(line.substr(std::min(colon + 2, line.size())));
    }
  }
  return values;
}

std::string firstOr(const std::vector<std::string>& values, std::string_view otherwise) {
  return values.empty() ? std::string(otherwise) : values.front();
}

std::string hypervisor() {
  std::string type = lineOf("/sys/hypervisor/type");
  if (!type.empty()) {
    return type;
  }
  std::istringstream flags(firstOr(cpuinfo("flags"), ""));
  const bool virtualProcessor = std::find(std::istream_iterator<std::string>(flags), {},
                                          "hypervisor") != std::istream_iterator<std::string>();
  if (!virtualProcessor) {
    return "";
  }
  const std::string product = lineOf("/sys/class/dmi/id/product_name");
  return product.empty() ? "yes" : product;
}

std::string powerSource() {
  bool battery = false;
  for (const fs::path& supply : entriesOf("/sys/class/power_supply")) {
    const std::string type = lineOf(supply / "type");
    if (type == "Mains" && lineOf(supply / "online") == "1") {
      return "mains";
    }
    battery = battery || (type == "Battery" && lineOf(supply / "status") == "Discharging");
  }
  return battery ? "battery" : "";
}

/// How many processors a list like "0-3,8" has.
int countOf(const std::string& list) {
  int count = 0;
  std::istringstream ranges(list);
  for (std::string range; std::getline(ranges, range, ',');) {
    const std::size_t dash = range.find('-');
    const int first = std::atoi(range.c_str());
    count += dash == std::string::npos ? 1 : std::atoi(range.c_str() + dash + 1) - first + 1;
  }
  return count;
}

std::vector<Cache> caches() {
  constexpr int kBytesPerKilobyte = 1024;
  std::vector<Cache> found;
  for (const fs::path& index : entriesOf(kProcessors / "cpu0" / "cache")) {
    const std::string type = lineOf(index / "type");
    if (!type.empty()) {
      found.push_back({type, std::atoi(lineOf(index / "level").c_str()),
                       std::int64_t{std::atoi(lineOf(index / "size").c_str())} * kBytesPerKilobyte,
                       countOf(lineOf(index / "shared_cpu_list"))});
    }
  }
  return found;
}

double stolenSeconds() {
  constexpr int kStealColumn = 8;  // after "cpu": user nice system idle iowait irq softirq steal
  std::istringstream columns(lineOf("/proc/stat"));
  std::string column;
  for (int i = 0; i <= kStealColumn; ++i) {
    columns >> column;
  }
  return std::strtod(column.c_str(), nullptr) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double meanClock() {
  const std::vector<std::string> clocks = cpuinfo("cpu MHz");
  const double sum = std::accumulate(clocks.begin(), clocks.end(), 0.0,
                                     [](double total, const std::string& clock) {
                                       return total + std::strtod(clock.c_str(), nullptr);
                                     });
  return clocks.empty() ? 0 : sum / static_cast<double>(clocks.size());
}

std::string nowInWords() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[sizeof "2000-01-01T00:00:00+0000"];
  if (std::strftime(text, sizeof text, "%FT%T%z", &local) == 0) {
    return "";
  }
  const std::string_view words = text;
  const std::size_t minutes = words.size() - 2;
  return fmt::format("{}:{}", words.substr(0, minutes), words.substr(minutes));
}

}  // namespace

Machine thisMachine() {
  utsname system{};
  uname(&system);
  return {system.nodename,
          fmt::format("{} {} {}", system.sysname, system.release, system.machine),
          firstOr(cpuinfo("model name"), ""),
          static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)),
          hypervisor(),
          powerSource(),
          caches()};
}

MachineState machineNow() {
  MachineState state;
  state.when = nowInWords();
  double load[3];
  const int known = getloadavg(load, 3);
  state.load.assign(load, load + std::max(known, 0));
  state.governor = lineOf(kProcessors / "cpu0/cpufreq/scaling_governor");
  state.clock = meanClock();
  state.steal = stolenSeconds();
  return state;
}

}  // namespace survey
