/// A GLUT window on a private X server, with its GL context current.
#pragma once

/// Opens the process's one test window, 400 by 400 pixels, on first use.
void needGlWindow();
