/// A clock and services that tests set, linked in place of the real ones.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/services/Services.h"

/// Stands still unless `step` is set or a call of the recording GL takes time.
struct FakeClock {
  std::uint64_t now = 1'000'000;  ///< microseconds
  std::uint64_t step = 0;         ///< added by every reading, after it
};

/// Knows the pictures of `pictures`, by name and by path, and keeps what it is asked.
struct FakeServices : Services {
  std::map<std::string, Bitmap> pictures = {
      {"OpenGLLogo.jpg", {false, 24, 3, 1, 1, {255, 255, 255}}}};
  std::optional<std::string> chosen;
  std::function<void()> whilePrompting = [] {};
  std::vector<std::string> prompts;
  std::vector<std::string> drawn;  ///< texts: font, size, sides, colour, and the text in brackets

  std::optional<Bitmap> imageNamed(const std::string& name) override;
  std::optional<Bitmap> imageFromFile(const std::string& path) override;
  Bitmap drawText(const TextRequest& request) override;
  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override;
  std::optional<std::string> runOpenPanel() override;
};

extern FakeClock fakeClock;
extern FakeServices fakeServices;
