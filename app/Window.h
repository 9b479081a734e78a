/// The benchmark window, its GLUT callbacks, and the window that can be placed in front of it.
#pragma once

constexpr int kInitialWindowSide = 400;

/// Opens the benchmark window and makes its GL context current. Takes GLUT's own options out of
/// the command line. Ends the process with a message and status 1 where there is no display or it
/// offers no OpenGL.
void openWindow(int* argc, char** argv);

/// Connects the callbacks; after that the test object is drawn whenever GLUT's main loop runs.
void connectCallbacks();

/// Asks for a window of that size, corrected to one that can be made, which a sentence on standard
/// error tells.
void requestWindowSize(int width, int height);

/// Covers the first screen, the benchmark window included.
void createObscuringWindow();
