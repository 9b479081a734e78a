#include "tests/support/GlWindow.h"

#include <cstdlib>

#include <GL/freeglut.h>

#include "tests/support/XServer.h"

void needGlWindow() {
  static const int window = [] {
    static const XServer server;
    setenv("DISPLAY", server.display().c_str(), 1);
    static char name[] = "test";
    char* arguments[] = {name, nullptr};
    int count = 1;
    glutInit(&count, arguments);
    glutInitDisplayString("rgba double depth=32");
    glutInitWindowSize(400, 400);
    const int made = glutCreateWindow("test");
    glutShowWindow();
    glutDisplayFunc([] {});
    glutMainLoopEvent();
    return made;
  }();
  glutSetWindow(window);
}
