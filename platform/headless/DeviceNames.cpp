#include "platform/headless/DeviceNames.h"

#include <algorithm>
#include <array>
#include <cctype>

bool mentions(std::string_view text, std::string_view part) {
  const auto sameLetter = [](unsigned char a, unsigned char b) {
    return std::tolower(a) == std::tolower(b);
  };
  return std::search(text.begin(), text.end(), part.begin(), part.end(), sameLetter) !=
             text.end() ||
         part.empty();
}

bool isSoftwareRenderer(std::string_view name) {
  static constexpr std::array kSoftware = {"llvmpipe", "softpipe",    "swrast",      "Software",
                                           "lavapipe", "SwiftShader", "Basic Render"};
  return std::any_of(kSoftware.begin(), kSoftware.end(),
                     [=](const char* known) { return mentions(name, known); });
}
