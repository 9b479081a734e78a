/// The attributes that a word names, as the test object's settings.
#pragma once

#include "words/Attributes.h"

class SorvantaTest;

void setAttribute(SorvantaTest& test, NamedAttribute named, bool on);
