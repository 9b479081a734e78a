/// What textures need from the desktop: pictures, drawn text, and two prompts.
///
/// platform/desktop implements this interface; tests bring an implementation of their own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A decoded picture. Samples are interleaved per pixel: red, green, blue and, with alpha,
/// straight (not premultiplied) alpha.
struct Bitmap {
  bool hasAlpha = false;
  int bitsPerPixel = 0;  ///< 24 without alpha and 32 with it for the pictures that can be uploaded
  int bytesPerRow = 0;
  float width = 0;                 ///< pixels
  float height = 0;                ///< pixels
  std::vector<std::uint8_t> data;  ///< bytesPerRow x height bytes, top row first
};

/// A text to draw on a transparent canvas, from the canvas's top left corner, wrapped at word
/// boundaries and clipped at the canvas's edges.
struct TextRequest {
  std::string text;      ///< UTF-8; may hold line breaks
  std::string fontName;  ///< family name
  int fontSize = 0;      ///< points at 72 dpi: a point is a pixel
  unsigned int width = 0;
  unsigned int height = 0;
  float red = 0;  ///< 0 to 1, as are green and blue
  float green = 0;
  float blue = 0;
};

class Services {
 public:
  virtual ~Services() = default;

  /// The picture called `name` among the application's resources; none when there is none or it
  /// cannot be decoded.
  virtual std::optional<Bitmap> imageNamed(const std::string& name) = 0;

  /// The picture in the file at `path`; none when it cannot be read as a picture or is too large.
  virtual std::optional<Bitmap> imageFromFile(const std::string& path) = 0;

  /// A 32-bit picture of the request's size with the text on a transparent background.
  virtual Bitmap drawText(const TextRequest& request) = 0;

  /// Shows a modal alert with one button and returns when it has been answered.
  virtual void runAlert(const std::string& title, const std::string& message,
                        const std::string& button) = 0;

  /// Lets the user choose a file; none when the user cancels.
  virtual std::optional<std::string> runOpenPanel() = 0;
};

/// The process's services. Defined by whichever implementation is linked.
Services& services();
