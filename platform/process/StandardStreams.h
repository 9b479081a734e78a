/// Standard input, output and error as a program can rely on them.
#pragma once

/// Occupies those of the descriptors 0 to 2 that are closed, so that no file or connection opened
/// later gets one and with it whatever is printed. Reading from such an input, and writing to such
/// an output, fails as it would on the closed one. To be called before anything is opened.
void occupyClosedStreams();

/// Flushes standard output. Where something written to it is lost, says so and ends the process
/// with status 1.
void flushOutput();
