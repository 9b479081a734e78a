#include "platform/services/WindowlessServices.h"

#include "platform/process/Sentences.h"
#include "platform/services/DrawnText.h"
#include "platform/services/Pictures.h"
#include "platform/services/Resources.h"

std::optional<Bitmap> WindowlessServices::imageNamed(const std::string& name) {
  for (const std::string& path : resourcePaths(name)) {
    if (std::optional<Bitmap> picture = decodePicture(path)) {
      return picture;
    }
  }
  return std::nullopt;
}

std::optional<Bitmap> WindowlessServices::imageFromFile(const std::string& path) {
  return decodePicture(path);
}

Bitmap WindowlessServices::drawText(const TextRequest& request) {
  return drawnText(request);
}

void WindowlessServices::runAlert(const std::string& title, const std::string& message,
                                  const std::string& /*button*/) {
  endWith(title + ": " + message + " (There is no window to ask in.)");
}

std::optional<std::string> WindowlessServices::runOpenPanel() {
  return std::nullopt;
}
