/// The command line.
#pragma once

/// Applies every argument from the second on to the test object, the report and the view, in
/// order. False when the line is bad; what was good of it has been applied then. Arguments that
/// are no options are named on standard output.
bool applyArguments(int argc, char** argv);

/// The same, for main: a bad line ends the process with the usage text on standard output and
/// status 1.
void parseCmdLineArgs(int argc, char** argv);
