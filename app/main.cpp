#include <iostream>
#include <new>
#include <string>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Headless.h"
#include "app/Reporting.h"
#include "app/Window.h"
#include "engine/Support.h"
#include "platform/gl/FixedFunction.h"
#include "platform/gl/RendererLine.h"
#include "platform/process/Sentences.h"
#include "platform/process/StandardStreams.h"

View* view = nullptr;
SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

namespace {

void requireFixedFunction() {
  if (const std::string trouble = whyNoFixedFunction(); !trouble.empty()) {
    endWith(trouble);
  }
}

/// A figure of something else must not pass for one of what was asked for.
void warnOf(const Support& support) {
  if (support.as == RunsAs::kOther) {
    warn(support.sentence);
  }
}

void warnOfThisRun() {
  if (!view->remark().empty()) {
    warn(view->remark());
  }
  warnOf(supportOf(*vpt, vpt->getDrawMethod()));
  warnOf(supportOfColors(*vpt));
  if (vpt->getMacros()) {
    warnOf(supportOfMacros());
  }
}

void warnOfThisBuild() {
#ifndef __OPTIMIZE__
  warn("this build is not optimised; its figures show its own cost beside the driver's.");
#endif
}

}  // namespace

int main(int argc, char** argv) {
  occupyClosedStreams();
  std::set_new_handler([] { endWith("there is not enough memory."); });
  warnOfThisBuild();
  view = displayNamed(argc, argv) ? openWindow(&argc, argv) : openHeadless(&argc, argv);
  requireFixedFunction();
  perfHistory = new PerformanceHistory;
  vpt = new SorvantaTest(perfHistory);
  vpt->initGL();
  parseCmdLineArgs(argc, argv);
  if (!report.terse) {
    std::cout << rendererLine() << '\n';
    flushOutput();
  }
  warnOfThisRun();
  view->run();
  return 0;
}
