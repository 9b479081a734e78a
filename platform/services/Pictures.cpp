#include "platform/services/Pictures.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include <gdk-pixbuf/gdk-pixbuf.h>

namespace {

/// Checks the size that the file claims before anything is allocated for it. Reading anything but a
/// regular file could wait for ever.
bool canBeDecoded(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    return false;
  }
  int width = 0;
  int height = 0;
  return gdk_pixbuf_get_file_info(path.c_str(), &width, &height) != nullptr &&
         std::int64_t{width} * height <= kMostPicturePixels;
}

}  // namespace

std::optional<Bitmap> decodePicture(const std::string& path) {
  if (!canBeDecoded(path)) {
    return std::nullopt;
  }
  g_autoptr(GdkPixbuf) picture = gdk_pixbuf_new_from_file(path.c_str(), nullptr);
  if (picture == nullptr) {
    return std::nullopt;
  }
  const int width = gdk_pixbuf_get_width(picture);
  const int height = gdk_pixbuf_get_height(picture);
  const int channels = gdk_pixbuf_get_n_channels(picture);

  Bitmap bitmap;
  bitmap.hasAlpha = gdk_pixbuf_get_has_alpha(picture) != FALSE;
  bitmap.bitsPerPixel = 8 * channels;
  bitmap.bytesPerRow = width * channels;
  bitmap.width = static_cast<float>(width);
  bitmap.height = static_cast<float>(height);

  // Rows are copied without padding: GL_UNPACK_ROW_LENGTH counts pixels, and cannot describe rows
  // of three-byte pixels that are padded to four bytes.
  const auto rowBytes = static_cast<std::size_t>(bitmap.bytesPerRow);
  const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(picture));
  const std::uint8_t* const rows = gdk_pixbuf_read_pixels(picture);
  bitmap.data.resize(rowBytes * static_cast<std::size_t>(height));
  for (std::size_t row = 0; row < static_cast<std::size_t>(height); ++row) {
    std::copy_n(rows + row * stride, rowBytes, bitmap.data.data() + row * rowBytes);
  }
  return bitmap;
}
