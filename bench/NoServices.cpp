// Services that never ask anybody: a picture of one pixel, and empty labels.
#include <cstdlib>

#include "textures/Services.h"

namespace {

class NoServices final : public Services {
 public:
  std::optional<Bitmap> imageNamed(const std::string& /*name*/) override {
    return Bitmap{false, 24, 3, 1, 1, {255, 255, 255}};
  }
  std::optional<Bitmap> imageFromFile(const std::string& /*path*/) override { std::abort(); }
  Bitmap drawText(const TextRequest& request) override {
    const std::size_t row = 4 * std::size_t{request.width};
    return {true,
            32,
            static_cast<int>(row),
            static_cast<float>(request.width),
            static_cast<float>(request.height),
            std::vector<std::uint8_t>(row * request.height, 128)};
  }
  void runAlert(const std::string& /*title*/, const std::string& /*message*/,
                const std::string& /*button*/) override {
    std::abort();
  }
  std::optional<std::string> runOpenPanel() override { std::abort(); }
};

}  // namespace

Services& services() {
  static NoServices instance;
  return instance;
}
