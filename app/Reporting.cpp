#include "app/Reporting.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "app/Application.h"
#include "engine/Primitives.h"
#include "perf/Clock.h"
#include "platform/gl/GL.h"
#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"

Report report;

namespace {

void printFigure(float figure) {
  const char* const unit =
      countsQuads(primitiveOf(vpt->getPrimitive())) ? " MQuad/sec" : " MTri/sec";
  std::cout << static_cast<double>(figure) << unit << '\n';
  flushOutput();
}

bool isRegression(float average) {
  const float deviation = std::abs(average - report.regressReference) / report.regressReference;
  return report.regress && deviation > report.tolerance;
}

}  // namespace

void recordPerf() {
  if (getTime() <= report.benchmarkStartTime) {
    return;
  }
  if (!report.benchmarkStarted) {
    report.lastPrintTime = getTime();
    report.benchmarkStarted = true;
    perfHistory->clearSamples();
    report.clearFigures();
    return;
  }
  if (static_cast<double>(getTime() - report.lastPrintTime) > 1.0) {
    report.sum += vpt->performance();
    ++report.samples;
    if (!report.averageResults) {
      printFigure(vpt->performance());
    }
    report.lastPrintTime = getTime();
  }
}

void quit() {
  glFinish();  // or the driver's own threads may be at work while the process ends
  const float average = report.sum / static_cast<float>(report.samples);
  if (report.averageResults) {
    if (report.samples == 0) {
      warn(
          "the run ended before a figure was recorded; there is no average. Let it run longer "
          "(-r), or draw offscreen (-o), where frames are short.");
    }
    printFigure(average);
  }
  flushOutput();
  std::exit(isRegression(average) ? EXIT_FAILURE : EXIT_SUCCESS);
}
