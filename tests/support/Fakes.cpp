#include "tests/support/Fakes.h"

#include <sstream>

#include "perf/Clock.h"

FakeClock fakeClock;
FakeServices fakeServices;

std::uint64_t getTime() {
  const std::uint64_t reading = fakeClock.now;
  fakeClock.now += fakeClock.step;
  return reading;
}

Services& services() {
  return fakeServices;
}

std::optional<Bitmap> FakeServices::imageNamed(const std::string& name) {
  return pictures.contains(name) ? std::optional(pictures[name]) : std::nullopt;
}

std::optional<Bitmap> FakeServices::imageFromFile(const std::string& path) {
  return imageNamed(path);
}

Bitmap FakeServices::drawText(const TextRequest& request) {
  std::ostringstream words;
  words << request.fontName << ' ' << request.fontSize << ' ' << request.width << ' '
        << request.height << ' ' << request.red << ' ' << request.green << ' ' << request.blue
        << " [" << request.text << ']';
  drawn.push_back(words.str());
  return {true, 32, 512, 128, 128, std::vector<std::uint8_t>(512UL * 128, 128)};
}

void FakeServices::runAlert(const std::string& title, const std::string& message,
                            const std::string& button) {
  prompts.push_back(title + "|" + message + "|" + button);
  whilePrompting();
}

std::optional<std::string> FakeServices::runOpenPanel() {
  prompts.emplace_back("panel");
  return chosen;
}
