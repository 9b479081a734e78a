/// The benchmark without a window: a buffer of the view's size on a graphics device.
#pragma once

#include "app/View.h"

/// Makes a context on the device that $SORVANTA_DEVICE or else the devices' order chooses, and
/// makes it current. Takes GLUT's own options, which have nothing to act upon, out of the command
/// line. Ends the process with a sentence and status 1 where there is no such device.
View* openHeadless(int* argc, char** argv);
