// The services that textures ask for, as GTK and the libraries under it provide them.

#include "platform/desktop/DrawnText.h"
#include "platform/desktop/Pictures.h"
#include "platform/desktop/Prompts.h"
#include "platform/desktop/Resources.h"
#include "textures/Services.h"

namespace {

class GtkServices : public Services {
 public:
  std::optional<Bitmap> imageNamed(const std::string& name) override {
    for (const std::string& path : resourcePaths(name)) {
      if (std::optional<Bitmap> picture = decodePicture(path)) {
        return picture;
      }
    }
    return std::nullopt;
  }

  std::optional<Bitmap> imageFromFile(const std::string& path) override {
    return decodePicture(path);
  }

  Bitmap drawText(const TextRequest& request) override { return drawnText(request); }

  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override {
    runAlertPrompt(title, message, button);
  }

  std::optional<std::string> runOpenPanel() override { return runFilePrompt(); }
};

}  // namespace

Services& services() {
  static GtkServices instance;
  return instance;
}
