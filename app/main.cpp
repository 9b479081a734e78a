#include <cstdlib>
#include <iostream>
#include <new>

#include <GL/freeglut.h>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Reporting.h"
#include "app/Window.h"
#include "platform/gl/ContextTable.h"

SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

namespace {

void printRenderer() {
  std::cout << glGetString(GL_RENDERER) << ", " << glGetString(GL_VERSION) << std::endl;
}

/// A figure of a range method without ranges must not pass for one with them.
void warnOfMissingRange() {
  const DrawMethod method = vpt->getDrawMethod();
  const unsigned int needed = method == kDrawArraysWithVertArrayRng ? vpt->modelVertexCount()
                              : method == kDrawArraysWithVertArrayObjects
                                  ? vpt->modelTriangleCountPerStrip()
                                  : 0;
  if (needed > vpt->maxVertexArraySize()) {
    std::cerr << "Sorvanta: a vertex array range covers at most " << vpt->maxVertexArraySize()
              << " vertices here, too few for this model; it is drawn from plain client arrays.\n";
  }
}

/// Nor may one of -m without the driver's own table.
void warnOfMissingTable() {
  if (vpt->getMacros() && !CGLGetCurrentContext()->ownTable) {
    std::cerr << "Sorvanta: this OpenGL driver does not expose its table of entry points; -m calls "
                 "the functions of glXGetProcAddress.\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::set_new_handler([] {
    std::cerr << "Sorvanta: there is not enough memory.\n";
    std::exit(EXIT_FAILURE);
  });
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
  warnOfMissingTable();
  glutMainLoop();
  return 0;
}
