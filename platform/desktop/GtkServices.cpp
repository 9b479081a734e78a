#include "platform/desktop/GtkServices.h"

#include "platform/desktop/Prompts.h"
#include "platform/services/WindowlessServices.h"

namespace {

class GtkServices final : public WindowlessServices {
 public:
  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override {
    runAlertPrompt(title, message, button);
  }

  std::optional<std::string> runOpenPanel() override { return runFilePrompt(); }
};

}  // namespace

Services& gtkServices() {
  static GtkServices instance;
  return instance;
}
