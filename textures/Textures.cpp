#include "textures/Textures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr unsigned int kStripeWidth = 8;
constexpr std::uint8_t kHalf = 128;

using Texel = std::array<std::uint8_t, 4>;

std::uint8_t lowByte(int value) {
  return static_cast<std::uint8_t>(value & 0xFF);
}

/// The largest side of a texture that the driver takes.
int largestSide() {
  GLint side = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &side);
  return side;
}

/// The largest power of two not above `side` and not more than `most`; 1 for anything smaller.
int powerOfTwoWithin(float side, int most) {
  const int whole = std::clamp(static_cast<int>(side), 1, std::max(most, 1));
  return static_cast<int>(std::bit_floor(static_cast<unsigned int>(whole)));
}

void bindTexture(GLuint* texture) {
  if (*texture == 0) {
    glGenTextures(1, texture);
  }
  glBindTexture(GL_TEXTURE_2D, *texture);
}

void setLinearFilters() {
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
}

void alert(const std::string& message) {
  services().runAlert("Alert", message, "OK");
}

/// The picture called `name`, or the one that the user points out in its stead.
std::optional<Bitmap> findPicture(const std::string& name) {
  if (std::optional<Bitmap> image = services().imageNamed(name)) {
    return image;
  }
  alert("Please locate resource = " + name);
  const std::optional<std::string> path = services().runOpenPanel();
  return path ? services().imageFromFile(*path) : std::nullopt;
}

void substitute(GLuint* texture) {
  alert("Warning: Substituting a different texture.  This may affect results.");
  StringToTexture(" 0 0 0 0 0 0 0 0 0 0 0 0 0 0", "Helvetica", 36, texture, 128, 128, 0, 0, 1);
}

}  // namespace

void GenerateStripeTexture(unsigned long texture, int phase, int width, int height, int red,
                           int green, int blue) {
  const Texel coloured = {lowByte(red), lowByte(green), lowByte(blue), kHalf};
  const Texel grey = {kHalf, kHalf, kHalf, kHalf};
  std::vector<Texel> row(static_cast<std::size_t>(std::max(width, 0)));
  for (std::size_t x = 0; x < row.size(); ++x) {
    // Unsigned, so that no phase overflows; the two lowest bits are the same.
    const auto stripe =
        static_cast<unsigned int>(x) / kStripeWidth + static_cast<unsigned int>(phase);
    row[x] = stripe % 4 == 0 ? coloured : grey;
  }
  std::vector<Texel> texels;
  texels.reserve(row.size() * static_cast<std::size_t>(std::max(height, 0)));
  for (int y = 0; y < height; ++y) {
    texels.insert(texels.end(), row.begin(), row.end());
  }
  // A picture uploaded before leaves its own row length set. Where that is longer than these
  // rows, or no multiple of the pattern's period, it would read past the texels or shear them.
  glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
               texels.data());
  setLinearFilters();
}

void StringToTexture(const char* text, const char* fontName, int fontSize, GLuint* texture,
                     unsigned int width, unsigned int height, float red, float green, float blue) {
  const Bitmap image = services().drawText({.text = text,
                                            .fontName = fontName,
                                            .fontSize = fontSize,
                                            .width = width,
                                            .height = height,
                                            .red = red,
                                            .green = green,
                                            .blue = blue});
  bindTexture(texture);
  int textureWidth = 0;
  int textureHeight = 0;
  TextureFromNSImage(image, texture, &textureWidth, &textureHeight);
}

void TextureFromNSImage(const Bitmap& image, GLuint* texture, int* width, int* height) {
  const int components = image.hasAlpha ? 4 : 3;
  if (image.bitsPerPixel != 8 * components) {
    return;
  }
  const GLenum format = image.hasAlpha ? GL_RGBA : GL_RGB;
  const int most = largestSide();
  const int textureWidth = powerOfTwoWithin(image.width, most);
  const int textureHeight = powerOfTwoWithin(image.height, most);

  // Double precision: a large product rounded to float could fall short of the rows. A picture
  // with an empty side still gets the one texel that the upload reads.
  const auto rowBytes = static_cast<std::size_t>(image.bytesPerRow);
  const double pictureBytes = static_cast<double>(image.bytesPerRow) * image.height;
  const std::size_t uploadBytes =
      static_cast<std::size_t>(textureHeight) *
      std::max(rowBytes, static_cast<std::size_t>(textureWidth * components));
  std::vector<std::uint8_t> flipped(std::max(static_cast<std::size_t>(pictureBytes), uploadBytes));
  const auto rows = static_cast<std::size_t>(image.height);
  for (std::size_t row = 0; row < rows; ++row) {
    std::copy_n(image.data.data() + (rows - 1 - row) * rowBytes, rowBytes,
                flipped.data() + row * rowBytes);
  }

  glPixelStorei(GL_UNPACK_ROW_LENGTH, image.bytesPerRow / components);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  bindTexture(texture);
  *width = textureWidth;
  *height = textureHeight;
  glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), textureWidth, textureHeight, 0, format,
               GL_UNSIGNED_BYTE, flipped.data());
  setLinearFilters();
}

void TextureFromResource(const char* name, GLuint* texture, int* width, int* height) {
  // The prompts run an event loop, and what it handles could come back here.
  static bool locked = false;
  if (locked) {
    return;
  }
  locked = true;
  if (const std::optional<Bitmap> image = findPicture(name)) {
    TextureFromNSImage(*image, texture, width, height);
  } else {
    substitute(texture);
  }
  locked = false;
}
