#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "app/Application.h"
#include "app/Reporting.h"
#include "app/Window.h"
#include "perf/Clock.h"
#include "platform/gl/Driver.h"

namespace {

constexpr std::uint64_t kStartDelay = 100000;  // microseconds
constexpr std::int64_t kMicrosecondsPerSecond = 1000000;

// Frozen, as scripts compare it: the README and the manual page correct its errors.
constexpr std::string_view kUsage =
    R"(Error in command line arguments.  Usage:
  Sorvanta [-help] [-r <runTimeLength>] [-regress <reference value> <tolerance>] [-terse] [-avg] [-a] [-t0 .. -t7] [-l0 .. -l7] [-n] [-c] [-s] [-m] [-T]
                     [-p <primitive] [-M <method>] [-d <detail>] [-z <zoom>] [-A] [-w <view width>] [-h <view height>] [-b] [-u]
    -help: produce this usage message
    -r: <runTimeLength> is float length of time in seconds to run app
    -terse: output single scalar per iteration indicating MTris/sec
    -avg: average results of all iterations and produce single scalar in MTris/sec
    -regress: return non-zero if the performance is not within <tolerance> percent of the <reference value>
    -a: run default auto test
    -t0 .. -t7: use texture number
    -l0 .. -l7: use light number
    -n: draw normals
    -c: use color
    -s: use secondary color
    -m: use CGL Macros
    -T: thrash state
    -p: <primitive> is one of 'triStrip', 'quadStrip', 'lineStrip', 'lines', 'points', 'quads' or 'triangles'
    -M: <method> is one of 'immediateMode', 'drawArrays', 'compiledVertArray', 'displayLists',
        'drawArraysWithVertArrayRng', 'drawArraysWithVertArrayObjects', 'drawArraysWithDynVertBufferObjectsVAO',
        'drawArraysWithStatVertBufferObjectsVAO', 'drawArraysWithStaticVBO', 'arrayElement'
    -d: <detail> is int value for detail in range 2 to 2048
    -z: <zoom> is int value for zoom in range -110 to 50
    -A: auto rotate
    -o: draw offscreen
    -w: <view width> is int value of view width in pixels
    -h: <view height> is int value of view height in pixels
    -b: draw behind another window
    -u: use texture copies, which copies textures from the frame buffer to texture memory
    Note: One of -a or -r is required as the first argument
  Examples:
    ./Sorvanta -r 5 -t0 -t1 -l4 -l7 -p quadStrip -M drawArraysWithVBOs
    ./Sorvanta -r 600 -t0 -t1 -t2 -t3 -l0 -l1 -l2 -l3 -l4 -l5 -l6 -l7 -n -c -s -m -T -p lineStrip -M drawArrays -d 10 -z 2 -A
    ./Sorvanta -a
)";

/// What the options of one command line share.
struct Scan {
  bool runLengthGiven = false;
  bool argumentError = false;
  std::int64_t runLength = 0;  // microseconds
  int viewWidth = kInitialWindowSide;
  int viewHeight = kInitialWindowSide;
};

/// An option's digit and values.
struct Given {
  unsigned int digit;
  const char* const* values;
};

struct Option {
  std::string_view word;
  bool hasDigit;  ///< stands for eight options: the word followed by 0 to 7
  int valueCount;
  void (*apply)(Scan&, const Given&);
};

/// As atol reads it, but defined for numbers of any length: those become the nearest that fits.
long number(const char* text) {
  return std::strtol(text, nullptr, 10);
}

int pixels(const char* text) {
  return static_cast<int>(std::clamp<long>(number(text), INT_MIN, INT_MAX));
}

void setRunLength(Scan& scan, const Given& given) {
  scan.runLengthGiven = true;
  // A negative length ends the run after its first frame.
  scan.runLength = std::int64_t{static_cast<int>(number(given.values[0]))} * kMicrosecondsPerSecond;
  if (scan.runLength != 0) {
    report.timedBenchmark = true;
  } else {
    scan.argumentError = true;
  }
}

void setRegression(Scan& /*scan*/, const Given& given) {
  report.regress = true;
  report.averageResults = true;
  report.terse = true;
  report.regressReference = static_cast<float>(std::atof(given.values[0]));
  report.tolerance = static_cast<float>(std::atof(given.values[1]));
  report.clearFigures();
}

template <typename Rows>
auto findWord(const Rows& rows, std::string_view word) {
  return std::find_if(rows.begin(), rows.end(),
                      [=](const auto& row) { return row.word != nullptr && row.word == word; });
}

void setPrimitive(Scan& scan, const Given& given) {
  const auto row = findWord(kPrimitives, given.values[0]);
  if (row == kPrimitives.end()) {
    scan.argumentError = true;
    return;
  }
  vpt->setPrimitive(row->primitive);
}

void setMethod(Scan& scan, const Given& given) {
  const auto row = findWord(kDrawMethods, given.values[0]);
  if (row == kDrawMethods.end()) {
    scan.argumentError = true;
    return;
  }
  if (const char* const missing = row->missing(driver())) {
    std::cerr << "Sorvanta: this OpenGL driver has no " << missing << ", which the method "
              << row->word << " draws with.\n";
    std::exit(EXIT_FAILURE);
  }
  vpt->setDrawMethod(row->method);
}

void setViewHeight(Scan& scan, const Given& given) {
  scan.viewHeight = pixels(given.values[0]);
  requestWindowSize(scan.viewWidth, scan.viewHeight);
}

void setViewWidth(Scan& scan, const Given& given) {
  scan.viewWidth = pixels(given.values[0]);
  requestWindowSize(scan.viewWidth, scan.viewHeight);
}

constexpr std::array<Option, 22> kOptions = {{
    {"-r", false, 1, setRunLength},
    {"-help", false, 0, [](Scan& scan, const Given&) { scan.argumentError = true; }},
    {"-regress", false, 2, setRegression},
    {"-terse", false, 0, [](Scan&, const Given&) { report.terse = true; }},
    {"-avg", false, 0,
     [](Scan&, const Given&) {
       report.averageResults = true;
       report.clearFigures();
     }},
    {"-t", true, 0, [](Scan&, const Given& given) { vpt->setTexturing(given.digit, true); }},
    {"-l", true, 0, [](Scan&, const Given& given) { vpt->setLighting(given.digit, true); }},
    {"-n", false, 0, [](Scan&, const Given&) { vpt->setNormals(true); }},
    {"-c", false, 0, [](Scan&, const Given&) { vpt->setVertexColors(true); }},
    {"-s", false, 0, [](Scan&, const Given&) { vpt->setSecColor(true); }},
    {"-m", false, 0, [](Scan&, const Given&) { vpt->setMacros(true); }},
    {"-T", false, 0, [](Scan&, const Given&) { vpt->setThrash(true); }},
    {"-p", false, 1, setPrimitive},
    {"-M", false, 1, setMethod},
    {"-d", false, 1,
     [](Scan&, const Given& given) {
       vpt->setDetail(static_cast<unsigned int>(number(given.values[0])));
     }},
    {"-z", false, 1,
     [](Scan&, const Given& given) { vpt->setZoom(static_cast<float>(number(given.values[0]))); }},
    {"-A", false, 0, [](Scan&, const Given&) { vpt->setRotate(true); }},
    {"-o", false, 0, [](Scan&, const Given&) { vpt->setDrawsOffscreen(true); }},
    {"-u", false, 0, [](Scan&, const Given&) { vpt->setTextureCopies(); }},
    {"-h", false, 1, setViewHeight},
    {"-w", false, 1, setViewWidth},
    {"-b", false, 0, [](Scan&, const Given&) { createObscuringWindow(); }},
}};

bool matches(const Option& option, std::string_view argument) {
  if (!option.hasDigit) {
    return argument == option.word;
  }
  return argument.size() == option.word.size() + 1 && argument.starts_with(option.word) &&
         argument.back() >= '0' && argument.back() <= '7';
}

}  // namespace

bool applyArguments(int argc, char** argv) {
  Scan scan;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    const auto option = std::find_if(kOptions.begin(), kOptions.end(),
                                     [=](const Option& o) { return matches(o, argument); });
    if (option == kOptions.end()) {
      std::cout << "cmd line option '" << argument << "' not recognized.\n";
      scan.argumentError = true;
      continue;
    }
    if (option->valueCount >= argc - i) {
      scan.argumentError = true;  // a value is missing
      break;
    }
    const auto digit = static_cast<unsigned int>(argument.back() - '0');
    option->apply(scan, {digit, argv + i + 1});
    i += option->valueCount;
  }
  if (!scan.runLengthGiven || scan.argumentError) {
    return false;
  }
  report.benchmarkStartTime = getTime() + kStartDelay;
  report.benchmarkEndTime = report.benchmarkStartTime + static_cast<std::uint64_t>(scan.runLength);
  return true;
}

void parseCmdLineArgs(int argc, char** argv) {
  if (!applyArguments(argc, argv)) {
    std::cout << kUsage << std::flush;
    std::exit(EXIT_FAILURE);
  }
}
