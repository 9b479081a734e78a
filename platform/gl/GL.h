/// OpenGL with the prototypes of its extensions: libGL exports all that are used here.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
