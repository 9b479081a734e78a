#include "app/Reporting.h"

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "app/Application.h"
#include "engine/Primitives.h"
#include "perf/Clock.h"

Report report;

namespace {

void printFigure(float figure) {
  const char* const unit = countsQuads(vpt->getPrimitive()) ? " MQuad/sec" : " MTri/sec";
  std::cout << static_cast<double>(figure) << unit << std::endl;
  if (!std::cout) {
    std::cerr << "Sorvanta: standard output cannot be written; the figures are lost.\n";
    std::_Exit(EXIT_FAILURE);
  }
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
  const float average = report.sum / static_cast<float>(report.samples);
  if (report.averageResults) {
    if (report.samples == 0) {
      std::cerr << "Sorvanta: the run ended before a figure was recorded; there is no average.\n";
    }
    printFigure(average);
  }
  std::exit(isRegression(average) ? EXIT_FAILURE : EXIT_SUCCESS);
}
