/// Aids for developers. Nothing calls them in a normal run.
#pragma once

/// Where a GL error is pending, names it on standard error and aborts.
void checkGL();
