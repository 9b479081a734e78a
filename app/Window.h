/// The benchmark window with its GLUT callbacks, and the window that can be placed in front of it.
#pragma once

#include "app/View.h"

/// Whether the environment or GLUT's own option names a display.
bool displayNamed(int argc, const char* const* argv);

/// Opens the benchmark window and makes its GL context current. Takes GLUT's own options out of
/// the command line. Ends the process with a message and status 1 where there is no display or it
/// offers no OpenGL.
View* openWindow(int* argc, char** argv);
