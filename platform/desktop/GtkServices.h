/// The services that textures ask for, with prompts in windows of GTK.
#pragma once

#include "platform/services/Services.h"

Services& gtkServices();
