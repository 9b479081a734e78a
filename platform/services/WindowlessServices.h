/// The services that take no window: pictures from files, and drawn text.
#pragma once

#include "platform/services/Services.h"

/// A prompt ends the program with its message: there is nobody to answer it, and a figure taken
/// with another texture would be that of something else.
class WindowlessServices : public Services {
 public:
  std::optional<Bitmap> imageNamed(const std::string& name) override;
  std::optional<Bitmap> imageFromFile(const std::string& path) override;
  Bitmap drawText(const TextRequest& request) override;
  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override;
  std::optional<std::string> runOpenPanel() override;
};
