#include <iostream>

#include <GL/freeglut.h>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Reporting.h"
#include "app/Window.h"

SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

namespace {

void printRenderer() {
  std::cout << glGetString(GL_RENDERER) << ", " << glGetString(GL_VERSION) << std::endl;
}

/// A figure of the range method without a range must not pass for one with it.
void warnOfMissingRange() {
  if (vpt->getDrawMethod() == kDrawArraysWithVertArrayRng &&
      vpt->modelVertexCount() > vpt->maxVertexArraySize()) {
    std::cerr << "Sorvanta: a vertex array range covers at most " << vpt->maxVertexArraySize()
              << " vertices here and the model has " << vpt->modelVertexCount()
              << "; it is drawn from plain client arrays.\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  openWindow(&argc, argv);
  perfHistory = new PerformanceHistory;
  vpt = new SorvantaTest(perfHistory);
  connectCallbacks();
  vpt->initGL();
  parseCmdLineArgs(argc, argv);
  if (!report.terse) {
    printRenderer();
  }
  warnOfMissingRange();
  glutMainLoop();
  return 0;
}
