/// Everything that one survey saw, as plain data: written to files, read back, and turned into
/// figures. Nothing here is computed from anything else here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "survey/plan/Cells.h"
#include "words/RunsAs.h"

namespace survey {

/// What a worker says of a cell when it has set it.
struct CellAnswer {
  RunsAs support = RunsAs::kItself;
  std::string sentence;  ///< what it runs as, or why not; empty where there is nothing to say
  std::string sent;      ///< the words of the attributes that really take effect
  double verticesPerCall = 0;
  double callsPerModel = 0;
  std::uint64_t primitivesPerModel = 0;  ///< triangles, or quads where countsQuads
  bool inCoreProfile = false;

  bool hasFigure() const { return ::hasFigure(support); }
};

/// One measured frame. Times in nanoseconds.
struct Frame {
  std::uint64_t primitives = 0;
  std::int64_t wall = 0;
  std::int64_t cpu = 0;               ///< of the submitting thread
  std::int64_t wait = 0;              ///< in which the thread could run and had no processor
  std::optional<std::int64_t> gpu;    ///< where the driver has timer queries
  std::optional<std::int64_t> steal;  ///< of the thread's processor, by the hypervisor
  bool disturbed = false;             ///< waited or was stolen from for more than a small share
  /// Of the wall time: after glFinish had returned, until a pixel could be read; 0 where glFinish
  /// had waited for the drawing, as it must.
  std::int64_t late = 0;
};

/// Frames of one cell, one right after the other.
struct Visit {
  std::size_t cell = 0;    ///< index into the record's cells
  std::size_t block = 0;   ///< blocks are the unit of replication: each has fresh workers
  std::size_t worker = 0;  ///< processes count through the survey
  double start = 0;        ///< seconds since the survey began
  std::vector<Frame> frames;
};

struct CellRecord {
  Cell cell;
  std::optional<CellAnswer> answer;  ///< none where no worker lived to give one
  std::vector<std::string> faults;   ///< what it cost workers, a sentence each

  /// Whether it has cost so many workers that it is not tried again.
  bool isGivenUp() const { return faults.size() >= 2; }
};

/// What a worker's context is.
struct Driver {
  unsigned int number = 0;  ///< of the device, in the list of them
  std::string device;
  std::string vendor;
  std::string renderer;
  std::string version;
  bool software = false;
  std::vector<std::string> libraries;  ///< the driver's files that were loaded

  bool operator==(const Driver&) const = default;
};

struct Cache {
  std::string type;  ///< "Data", "Instruction", "Unified"
  int level = 0;
  std::int64_t size = 0;  ///< bytes
  int sharing = 0;        ///< processors
};

/// What the machine is. Texts are empty where it does not say.
struct Machine {
  std::string host;
  std::string kernel;
  std::string processor;
  int processors = 0;
  std::string virtualMachine;  ///< the hypervisor, "yes" where it has no name; empty: none
  std::string powerSource;     ///< "mains" or "battery"
  std::vector<Cache> caches;
};

/// What it was doing at one time.
struct MachineState {
  std::string when;  ///< ISO 8601, with the zone
  std::vector<double> load;
  std::string governor;
  double clock = 0;  ///< MHz, the mean over the processors; 0: unknown
  double steal = 0;  ///< seconds since the start of the machine, over all processors
};

/// The program that took the survey.
struct Program {
  std::string version;
  std::string commit;
  std::string buildType;
  std::string compiler;
  std::string flags;
  bool optimised = false;
};

struct Settings {
  double seconds = 60;
  double precision = 1;  ///< percent
  double frame = 15;     ///< milliseconds
  std::uint64_t seed = 0;
  std::string device;  ///< as asked for; empty: the first that works
  bool onScreen = false;
  double patience = 10;  ///< seconds that a worker may be silent, at details up to 512
  std::string commandLine;
  std::vector<std::string> environment;  ///< NAME=value, beside what was there
};

enum class Ending {
  kPrecise,  ///< all ratios are known as precisely as asked for
  kTimeUp,
  kInterrupted,  ///< by a signal
  kNoWorker,     ///< no further worker could be started
  kNothingLeft,  ///< no cell has a figure
};

struct Record {
  Program program;
  Settings settings;
  Machine machine;
  MachineState before;
  MachineState after;
  Driver driver;
  std::vector<CellRecord> cells;
  std::vector<Visit> visits;  ///< in the order of time
  /// How fast the submitting threads' core was at the beginning of each block: steps of a
  /// calculation that is always the same per second of processor time. Empty where no core was
  /// chosen.
  std::vector<double> speeds;
  Ending ending = Ending::kTimeUp;
  std::string endingSentence;  ///< the reason where there is more to say
  int signal = 0;              ///< that interrupted
  double elapsed = 0;          ///< seconds
};

}  // namespace survey
