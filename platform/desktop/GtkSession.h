/// GTK beside GLUT: started when a window of GTK's is first needed, and kept from disturbing the
/// rest of the process.
#pragma once

/// Starts GTK on the display that GLUT opened ($DISPLAY when no GL context is current). Later
/// calls repeat the first one's answer. False when the display cannot be opened.
bool startGtk();

/// Handles what has arrived for GTK's windows; never waits.
void drainGtkEvents();
