/// Everything that sittings saw, as plain data: written to files, read back, and turned into
/// figures. Nothing here is computed from anything else here.
///
/// A sitting has one side or several: drivers, each with its environment, whose workers draw in
/// turns. With one side it is a survey.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Cells.h"
#include "words/RunsAs.h"

namespace survey {

/// What a worker says of a cell when it has set it.
struct CellAnswer {
  RunsAs runsAs = RunsAs::kItself;
  std::string sentence;  ///< what it runs as, or why not; empty where there is nothing to say
  std::string sent;      ///< the words of the attributes that really take effect
  double verticesPerCall = 0;
  double callsPerModel = 0;
  std::uint64_t primitivesPerModel = 0;  ///< triangles, or quads where countsQuads
  bool inCoreProfile = false;

  bool hasFigure() const { return ::hasFigure(runsAs); }
};

/// One measured frame. Times in nanoseconds.
struct Frame {
  std::uint64_t primitives = 0;
  std::int64_t wall = 0;
  std::int64_t cpu = 0;             ///< of the submitting thread
  std::int64_t wait = 0;            ///< of the wall time: the thread could run and had no processor
  std::optional<std::int64_t> gpu;  ///< where the driver has timer queries
  std::optional<std::int64_t> steal;  ///< of the thread's processor, by the hypervisor
  /// Whether so much of it was lost to others that what is left says little.
  bool disturbed = false;
  /// Of the wall time: after glFinish had returned, until a pixel could be read; 0 where glFinish
  /// had waited for the drawing, as it must.
  std::int64_t late = 0;

  /// What every figure counts as the time that it took: others' use of the processor is no part of
  /// it. Where the driver's own threads use the same processor, it is as if they had had another.
  std::int64_t time() const { return wall - wait; }
};

/// One cell, drawn by the sides in turns.
struct Visit {
  std::size_t cell = 0;   ///< index into the sitting's cells
  std::size_t block = 0;  ///< blocks are the unit of replication: each has fresh workers
  double start = 0;       ///< seconds since the sitting began
  /// By side. Those at the same place were drawn one right after the other; a side has none where
  /// it did not take part.
  std::vector<std::vector<Frame>> frames;
  std::vector<std::size_t> workers;  ///< by side; processes count through the sitting
  /// Primitives per second of a cell that is always the same, right before the frames and right
  /// after them: they tell what state the processor was in. Both, or none.
  std::vector<double> yardstick;
};

/// What a function took of some frames.
struct FunctionTime {
  std::string function;    ///< empty where its file does not name it
  std::string file;        ///< a library, without its folders; empty for what was made at run time
  std::uint64_t size = 0;  ///< of its code, in bytes; 0: not known
  double nanoseconds = 0;  ///< of the submitting thread, outside the kernel
};

/// Where the submitting thread was in frames of one cell, which count for nothing else.
struct Profile {
  std::uint64_t primitives = 0;
  double time = 0;    ///< nanoseconds, as a frame has it
  double others = 0;  ///< nanoseconds of the process's other threads
  std::vector<FunctionTime> functions;
  std::string whyNot;  ///< why there are no functions; empty: there are
};

struct ProfiledVisit {
  std::size_t cell = 0;
  std::size_t block = 0;  ///< of those made for this
  std::vector<Profile> sides;
};

/// What a side said of a cell, and what happened to its workers there.
struct CellState {
  std::optional<CellAnswer> answer;  ///< none where no worker lived to give one
  std::vector<std::string> faults;   ///< why workers failed, a sentence each

  /// Whether it has made so many workers fail that it is not tried again.
  bool isGivenUp() const { return faults.size() >= 2; }
  /// Whether anything speaks against it on this side.
  bool isBad() const { return !faults.empty() || (answer && !answer->hasFigure()); }
};

/// A file of code.
struct Library {
  std::string path;
  /// The linker's build-id, else size and time of change with a blank between; empty: not known.
  std::string build;

  bool operator==(const Library&) const = default;
};

/// What a worker's context is.
struct Driver {
  unsigned int number = 0;  ///< of the device, in the list of them
  std::string device;
  std::string vendor;
  std::string renderer;
  std::string version;
  bool software = false;
  std::vector<Library> libraries;        ///< loaded: the driver's, and all that it builds on
  std::vector<std::string> environment;  ///< NAME=value: what drivers heed, wherever it came from
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
};

struct Side {
  std::string name;                      ///< empty for the only one of a survey
  std::vector<std::string> environment;  ///< NAME=value, of its workers, beside what was there
  Driver driver{};
  std::vector<CellState> cells{};  ///< in the order of the sitting's cells
  std::string whyNoWorker{};       ///< why no further worker could be started; empty: always one

  /// Whether a worker of it ever had a context.
  bool started() const { return !driver.renderer.empty(); }
};

enum class Ending {
  kTimeUp,
  kPrecise,      ///< everything is known as precisely, or as surely, as asked for
  kInterrupted,  ///< by a signal
  kNoWorker,     ///< a side that is needed could start no further worker
  kNothingLeft,  ///< no cell has a figure
};

/// One sitting.
struct Record {
  Program program;
  Settings settings;
  Machine machine;
  MachineState before;
  MachineState after;
  std::vector<Cell> cells;
  std::vector<Side> sides;    ///< the first is what the others are compared with
  std::vector<Visit> visits;  ///< in the order of time
  std::vector<ProfiledVisit> profiles;
  Ending ending = Ending::kTimeUp;
  int signal = 0;      ///< that interrupted
  double elapsed = 0;  ///< seconds
};

/// What somebody wants to draw, for whom the best method is looked for.
struct Question {
  double triangles = 0;
  double strips = 1;
  bool changes = false;  ///< whether its vertices change every time
  bool core = false;     ///< whether it must be possible in a core profile
};

/// What a file holds, and what is shown: sittings whose only side is ranked, or whose sides are
/// compared with the very first one. Sides of the same name in several sittings are one, which was
/// measured again.
struct Result {
  std::vector<Record> sittings;
  double threshold = 0;                ///< percent: a change that is not larger does not matter
  std::optional<Question> question{};  ///< that the only sitting was taken for

  bool isComparison() const { return sittings.size() > 1 || sittings.front().sides.size() > 1; }
  /// Whether all sides drew in turns, in one sitting.
  bool isInTurns() const { return sittings.size() == 1; }
};

/// One side of a sitting, to be read while that lives.
struct SideView {
  const Record* record;
  std::size_t index;

  const Side& side() const { return record->sides[index]; }
  const Cell& cell(std::size_t i) const { return record->cells[i]; }
  const CellState& state(std::size_t i) const { return side().cells[i]; }
  const std::string& name() const { return side().name; }
  const std::vector<Frame>& frames(const Visit& visit) const { return visit.frames[index]; }
};

/// All sides, in order.
inline std::vector<SideView> sidesOf(const Record& record) {
  std::vector<SideView> sides;
  for (std::size_t side = 0; side < record.sides.size(); ++side) {
    sides.push_back({&record, side});
  }
  return sides;
}
inline std::vector<SideView> sidesOf(const Result& result) {
  std::vector<SideView> sides;
  for (const Record& record : result.sittings) {
    const std::vector<SideView> some = sidesOf(record);
    sides.insert(sides.end(), some.begin(), some.end());
  }
  return sides;
}

}  // namespace survey
