/// Pictures as the textures take them, decoded by GdkPixbuf.
#pragma once

#include <optional>
#include <string>

#include "textures/Services.h"

/// The picture in the file at `path`, 24 bits a pixel or with alpha 32; none when the file cannot
/// be read as a picture.
std::optional<Bitmap> decodePicture(const std::string& path);
