/// A GLUT window on a private X server, with its GL context current.
#pragma once

#include <cstdlib>

#include <GL/freeglut.h>

#include "tests/support/Shell.h"

/// Opens the process's one test window, 400 by 400 pixels, on first use.
inline void needGlWindow() {
  needXServer();
  static const int window = [] {
    int count = 0;
    glutInit(&count, nullptr);
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
