/// Pictures as the textures take them, decoded by GdkPixbuf.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/services/Services.h"

/// As many as a texture of 8192 by 8192 has.
constexpr std::int64_t kMostPicturePixels = std::int64_t{8192} * 8192;

/// The picture in the file at `path`, 24 bits a pixel or with alpha 32; none when it is no regular
/// file, cannot be read as a picture, or has more than kMostPicturePixels.
std::optional<Bitmap> decodePicture(const std::string& path);
