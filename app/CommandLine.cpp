#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "app/Application.h"
#include "app/Reporting.h"
#include "engine/AttributeSetters.h"
#include "engine/Support.h"
#include "perf/Clock.h"
#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"

namespace {

constexpr std::uint64_t kStartDelay = 100000;  // microseconds
constexpr std::int64_t kMicrosecondsPerSecond = 1000000;

// Frozen, as scripts compare it: the manual page corrects its errors.
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
  int viewWidth = kInitialViewSide;
  int viewHeight = kInitialViewSide;
  std::string refusal;            ///< of what this view cannot do
  std::string regressionReading;  ///< how -regress was taken, where it may not have been meant so
};

using Values = const char* const*;

/// An option that is no attribute.
struct Option {
  std::string_view word;
  int valueCount;
  void (*apply)(Scan&, Values);
};

/// As atol reads it, but defined for numbers of any length: those become the nearest that fits.
long number(const char* text) {
  return std::strtol(text, nullptr, 10);
}

/// The same in the range of int.
int wholeNumber(const char* text) {
  return static_cast<int>(std::clamp<long>(number(text), INT_MIN, INT_MAX));
}

/// The time that many microseconds later, or before for a negative number: 0 at the earliest.
std::uint64_t later(std::uint64_t time, std::int64_t microseconds) {
  const auto distance = static_cast<std::uint64_t>(std::abs(microseconds));
  return microseconds >= 0 ? time + distance : time - std::min(time, distance);
}

void setRunLength(Scan& scan, Values values) {
  scan.runLengthGiven = true;
  // A negative length ends the run after its first frame.
  scan.runLength = std::int64_t{wholeNumber(values[0])} * kMicrosecondsPerSecond;
  if (scan.runLength != 0) {
    report.timedBenchmark = true;
  } else {
    scan.argumentError = true;
  }
}

/// As atof reads a text.
struct Reading {
  float number;
  bool plain;  ///< a finite number, and nothing after it
};

Reading readingOf(const char* text) {
  char* end = nullptr;
  const auto number = static_cast<float>(std::strtod(text, &end));
  return {number, end != text && *end == '\0' && std::isfinite(number)};
}

void setRegression(Scan& scan, Values values) {
  report.regress = true;
  report.averageResults = true;
  report.terse = true;
  const Reading reference = readingOf(values[0]);
  const Reading tolerance = readingOf(values[1]);
  report.regressReference = reference.number;
  report.tolerance = tolerance.number;
  report.clearFigures();
  scan.regressionReading.clear();
  if (!reference.plain || reference.number <= 0 || !tolerance.plain || tolerance.number < 0) {
    std::ostringstream sentence;
    sentence << "-regress " << values[0] << ' ' << values[1] << " is taken as a reference of "
             << reference.number << " million per second and a tolerance of "
             << 100 * tolerance.number << " percent.";
    scan.regressionReading = sentence.str();
  }
}

void setPrimitive(Scan& scan, Values values) {
  const PrimitiveWord* const row = primitiveNamed(values[0]);
  if (row == nullptr) {
    scan.argumentError = true;
    return;
  }
  vpt->setPrimitive(row->primitive);
}

void setMethod(Scan& scan, Values values) {
  const DrawMethodWord* const row = drawMethodNamed(values[0]);
  if (row == nullptr) {
    scan.argumentError = true;
    return;
  }
  vpt->setDrawMethod(row->method);
}

void setViewHeight(Scan& scan, Values values) {
  scan.viewHeight = wholeNumber(values[0]);
  view->requestSize(scan.viewWidth, scan.viewHeight);
}

void setViewWidth(Scan& scan, Values values) {
  scan.viewWidth = wholeNumber(values[0]);
  view->requestSize(scan.viewWidth, scan.viewHeight);
}

/// The attributes have a table of their own.
constexpr std::array<Option, 14> kOptions = {{
    {"-r", 1, setRunLength},
    {"-help", 0, [](Scan& scan, Values) { scan.argumentError = true; }},
    {"-regress", 2, setRegression},
    {"-terse", 0, [](Scan&, Values) { report.terse = true; }},
    {"-avg", 0,
     [](Scan&, Values) {
       report.averageResults = true;
       report.clearFigures();
     }},
    {"-p", 1, setPrimitive},
    {"-M", 1, setMethod},
    {"-d", 1,
     [](Scan&, Values values) { vpt->setDetail(static_cast<unsigned int>(number(values[0]))); }},
    {"-z", 1, [](Scan&, Values values) { vpt->setZoom(static_cast<float>(number(values[0]))); }},
    {"-o", 0, [](Scan&, Values) { vpt->setDrawsOffscreen(true); }},
    {"-u", 0, [](Scan&, Values) { vpt->setTextureCopies(); }},
    {"-h", 1, setViewHeight},
    {"-w", 1, setViewWidth},
    {"-b", 0, [](Scan& scan, Values) { scan.refusal = view->cover(); }},
}};

}  // namespace

bool applyArguments(int argc, char** argv) {
  Scan scan;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (const std::optional<NamedAttribute> attribute = attributeNamed(argument)) {
      setAttribute(*vpt, *attribute, true);
      continue;
    }
    const Option* const option = rowWith(kOptions, &Option::word, argument);
    if (option == nullptr) {
      std::cout << "cmd line option '" << argument << "' not recognized.\n";
      scan.argumentError = true;
      continue;
    }
    if (option->valueCount >= argc - i) {
      scan.argumentError = true;  // a value is missing
      break;
    }
    option->apply(scan, argv + i + 1);
    i += option->valueCount;
  }
  if (!scan.runLengthGiven || scan.argumentError) {
    return false;
  }
  if (!scan.refusal.empty()) {
    endWith(scan.refusal);
  }
  // Not before: the options after a method decide as well what it needs.
  const Support support = supportOf(*vpt, vpt->getDrawMethod());
  if (support.as == RunsAs::kRefused) {
    endWith(support.sentence);
  }
  if (!scan.regressionReading.empty()) {
    warn(scan.regressionReading);
  }
  report.benchmarkStartTime = getTime() + kStartDelay;
  report.benchmarkEndTime = later(report.benchmarkStartTime, scan.runLength);
  return true;
}

void parseCmdLineArgs(int argc, char** argv) {
  if (!applyArguments(argc, argv)) {
    std::cout << kUsage;
    flushOutput();
    std::exit(EXIT_FAILURE);
  }
}
