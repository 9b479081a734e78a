/// Text on a transparent canvas, drawn by Pango and Cairo. Needs neither a display nor GTK.
#pragma once

#include "platform/services/Services.h"

/// A 32-bit picture of the request's size; transparent where there is no text.
Bitmap drawnText(const TextRequest& request);
