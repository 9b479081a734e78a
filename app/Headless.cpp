#include "app/Headless.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "app/Application.h"
#include "platform/headless/DeviceChoice.h"
#include "platform/headless/EglWindowSystem.h"
#include "platform/headless/HeadlessContext.h"
#include "platform/headless/Trouble.h"
#include "platform/process/Sentences.h"
#include "platform/services/WindowlessServices.h"

namespace {

class HeadlessView final : public View {
 public:
  HeadlessView(const HeadlessDevice& device, const std::string& card)
      : context_(device.number, size_.width, size_.height),
        remark_("there is no display; running headless on " + context_.name() +
                (context_.software() ? ", a software renderer." : ".") + card) {}

  void requestSize(int width, int height) override {
    size_ = adoptSize({width, height});
    try {
      context_.resize(size_.width, size_.height);
    } catch (const HeadlessTrouble& trouble) {
      endWith(trouble.what());
    }
  }

  std::string cover() override {
    return "without a display there is no window to draw behind; leave -b out, or set DISPLAY.";
  }

  void run() override {
    vpt->setBounds(static_cast<unsigned int>(size_.width), static_cast<unsigned int>(size_.height));
    while (true) {
      drawFrame();
      // In place of a window's buffer swap: what the frame still has to do, such as copies to
      // textures, must not fall into the next one's time.
      glFinish();
    }
  }

  std::string remark() const override { return remark_; }
  Services& services() override { return services_; }
  const WindowSystem& windowSystem() const override { return eglWindowSystem(); }

 private:
  ViewSize size_ = {kInitialViewSide, kInitialViewSide};
  HeadlessContext context_;
  WindowlessServices services_;
  std::string remark_;
};

struct GlutOption {
  std::string_view word;
  int valueCount;
};

/// But for the one that names a display. All are about windows.
constexpr std::array<GlutOption, 6> kGlutOptions = {{
    {"-geometry", 1},
    {"-direct", 0},
    {"-indirect", 0},
    {"-iconic", 0},
    {"-gldebug", 0},
    {"-sync", 0},
}};

void takeGlutOptionsOut(int* argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < *argc; ++i) {
    const auto* const option =
        std::find_if(kGlutOptions.begin(), kGlutOptions.end(),
                     [=](const GlutOption& o) { return o.word == std::string_view(argv[i]); });
    if (option == kGlutOptions.end()) {
      argv[kept++] = argv[i];
    } else {
      i += option->valueCount;
    }
  }
  *argc = kept;
}

}  // namespace

View* openHeadless(int* argc, char** argv) {
  takeGlutOptionsOut(argc, argv);
  try {
    std::vector<HeadlessDevice> devices = listDevices();
    const HeadlessDevice device = chooseDevice(devices, wantedDevice());
    const std::string card = device.software ? cardLeftOut(devices) : "";
    return new HeadlessView(device, card.empty() ? "" : ' ' + card);
  } catch (const HeadlessTrouble& trouble) {
    endWith(trouble.what());
  }
}
