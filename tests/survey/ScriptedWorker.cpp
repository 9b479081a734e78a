// A worker without a driver: its rates are made up, and it misbehaves where $SCRIPT says so, as
// "CELL=DEED CELL=DEED": when that cell is set. $SPEED makes cells slower or faster in the same
// way: "CELL=0.9", or "all=0.9". $WORKERS names a file to write process ids to, $TURNS one to write
// $SIDE to whenever a frame is asked for, $SAMPLES says why there are none.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <sys/socket.h>
#include <unistd.h>

#include "platform/process/Sentences.h"
#include "survey/worker/Protocol.h"
#include "survey/worker/Worker.h"
#include "words/DrawMethods.h"

namespace survey {
namespace {

using namespace std::chrono_literals;

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string wordFor(const std::string& cell, const char* list) {
  std::istringstream script(variable(list));
  for (std::string entry; script >> entry;) {
    if (entry.starts_with(cell + "=")) {
      return entry.substr(cell.size() + 1);
    }
  }
  return "";
}

std::string deedFor(const std::string& cell) {
  return wordFor(cell, "SCRIPT");
}

double speedOf(const std::string& cell) {
  double speed = 1;
  for (const std::string& factor : {wordFor(cell, "SPEED"), wordFor("all", "SPEED")}) {
    speed *= factor.empty() ? 1 : std::stod(factor);
  }
  return speed;
}

class ScriptedSubject : public Subject {
 public:
  explicit ScriptedSubject(int ofWorker) : socket(ofWorker) {}

  Driver begin(const Begin& begin) override {
    std::ofstream(variable("WORKERS"), std::ios::app) << getpid() << '\n';
    noise.seed(static_cast<unsigned int>(begin.heapSeed));
    deed = deedFor("begin");
    std::ifstream workers(variable("WORKERS"));
    const auto started = std::count(std::istreambuf_iterator<char>(workers), {}, '\n');
    if (deed == "chatter") {
      std::cerr << std::string(10000, '.') << '\n';
    } else if (deed == "fail" || (deed == "later" && started > 2)) {
      throw std::runtime_error("found no device");
    }
    const std::string version = variable("VERSION");
    return {
        0,     "scripted", "nobody", "scripted \xff renderer", version.empty() ? "1.0" : version,
        false, {},         {}};
  }

  CellAnswer set(const Cell& cell) override {
    std::cout << "among the results" << std::endl;  // as the engine does
    deed = deedFor(nameOf(cell));
    waitsEvery = deed == "busy" ? 1 : deed == "disturb" ? 2 : 0;
    isYardstick = cell.method == "immediateMode";
    speed = speedOf(nameOf(cell));
    rate = 1e6 * (100 + static_cast<double>(drawMethodNamed(cell.method)->method)) * speed;
    CellAnswer answer{RunsAs::kItself,
                      "",
                      cell.with,
                      cell.detail * 2.0 + 2,
                      1.0 * cell.detail,
                      std::uint64_t{2} * cell.detail * cell.detail,
                      true};
    if (deed == "refuse") {
      answer.runsAs = RunsAs::kRefused;
      answer.sentence = "there are no lists here";
    } else if (deed == "garbage") {
      send(socket, "{", 1, 0);
    } else if (deed == "silence") {
      std::this_thread::sleep_for(1h);
    } else if (deed == "slow") {
      std::this_thread::sleep_for(4s);
    } else if (deed == "interrupt") {
      kill(getppid(), SIGINT);
    } else if (deed == "fail") {
      throw std::runtime_error("lost its context");
    } else if (deed == "abort") {
      std::cerr << "first line\ndriver: assertion failed\n";
      std::abort();
    } else if (deed == "once" && !std::ifstream(variable("WORKERS") + ".once")) {
      const std::ofstream mark(variable("WORKERS") + ".once");
      raise(SIGKILL);
    } else if (deed == "memory") {
      endWith("there is not enough memory.");
    } else if (deed == "SIGKILL" || deed == "SIGSTOP") {
      raise(deed == "SIGKILL" ? SIGKILL : SIGSTOP);
    }
    return answer;
  }

  Frame draw(std::chrono::microseconds leastTime) override {
    if (deed == "drawing") {
      std::abort();
    }
    if (!isYardstick) {
      std::ofstream(variable("TURNS"), std::ios::app) << variable("SIDE") << '\n';
    }
    if (deed == "long") {
      std::this_thread::sleep_for(2s);
    }
    std::this_thread::sleep_for(100us);
    std::normal_distribution<> scatter(1, 0.001);
    const auto time = std::chrono::nanoseconds(leastTime).count();
    const auto primitives = rate * scatter(noise) * static_cast<double>(time) / 1e9;
    const bool waits = waitsEvery != 0 && ++drawn % waitsEvery == 0;
    const std::int64_t wait = !waits ? 0 : waitsEvery == 1 ? 9 * time : time / 5;
    return {static_cast<std::uint64_t>(primitives), time + wait, time, wait, time / 2, {}, false};
  }

  Profile profile(std::chrono::microseconds leastTime, int frames) override {
    std::normal_distribution<> scatter(1, 0.01);
    const auto whole = static_cast<double>(std::chrono::nanoseconds(leastTime).count() * frames);
    const double usual = std::min(1.0, speed) * whole * scatter(noise);
    return {static_cast<std::uint64_t>(rate * whole / 1e9),
            whole,
            0,
            {{"draw", "libscripted.so.1", 100, usual},
             {"slowed", "libscripted.so.1", 0, whole - usual}},
            variable("SAMPLES")};
  }

 private:
  int socket;
  std::string deed;  ///< of the cell that is set
  double speed = 1;
  double rate = 0;
  int waitsEvery = 0;
  bool isYardstick = false;
  int drawn = 0;
  std::mt19937 noise;
};

}  // namespace

int work(const Descriptor& socket) {
  ScriptedSubject subject(socket.get());
  serve(socket, subject);
  return EXIT_SUCCESS;
}

std::string deviceList() {
  return "0: scripted";
}

}  // namespace survey
