/// A clock and services that tests set, linked in place of the real ones.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "textures/Services.h"

/// Stands still unless `step` is set.
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
  TextRequest drawn;

  std::optional<Bitmap> imageNamed(const std::string& name) override {
    return pictures.contains(name) ? std::optional(pictures[name]) : std::nullopt;
  }
  std::optional<Bitmap> imageFromFile(const std::string& path) override { return imageNamed(path); }
  Bitmap drawText(const TextRequest& request) override {
    drawn = request;
    return {true, 32, 512, 128, 128, std::vector<std::uint8_t>(512UL * 128, 128)};
  }
  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override {
    prompts.push_back(title + "|" + message + "|" + button);
    whilePrompting();
  }
  std::optional<std::string> runOpenPanel() override {
    prompts.emplace_back("panel");
    return chosen;
  }
};

extern FakeClock fakeClock;
extern FakeServices fakeServices;
