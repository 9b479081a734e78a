#include "platform/headless/DeviceChoice.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "platform/headless/DeviceNames.h"
#include "platform/headless/Trouble.h"

namespace {

const char* const kVariable = "SORVANTA_DEVICE";

using TryOne = std::function<void(HeadlessDevice&)>;

/// The number, where the whole text is one that a device has.
std::optional<std::size_t> numberIn(std::string_view text, std::size_t count) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && number < count ? std::optional(number) : std::nullopt;
}

HeadlessDevice& findByName(std::span<HeadlessDevice> devices, const WantedDevice& wanted,
                           const TryOne& tryOne) {
  std::vector<HeadlessDevice*> found;
  for (HeadlessDevice& device : devices) {
    tryOne(device);
    if (mentions(device.name, wanted.device) || mentions(device.renderNode, wanted.device)) {
      found.push_back(&device);
    }
  }
  if (found.size() != 1) {
    throw HeadlessTrouble(
        std::string(wanted.by) + '=' + std::string(wanted.device) +
        (found.empty() ? " matches no graphics device" : " matches more than one graphics device") +
        "; give a number or a part of a name from this list:\n" + describeDevices(devices));
  }
  return *found.front();
}

const HeadlessDevice& chooseWanted(std::span<HeadlessDevice> devices, const WantedDevice& wanted,
                                   const TryOne& tryOne) {
  const std::optional<std::size_t> number = numberIn(wanted.device, devices.size());
  HeadlessDevice& device = number ? devices[*number] : findByName(devices, wanted, tryOne);
  if (number) {
    tryOne(device);
  }
  if (!device.trouble.empty()) {
    throw HeadlessTrouble("the graphics device that " + std::string(wanted.by) +
                          " chooses cannot be used:\n" + describeDevices({&device, 1}));
  }
  return device;
}

/// Cards before software renderers, which are what remains.
const HeadlessDevice& chooseBest(std::span<HeadlessDevice> devices, const TryOne& tryOne) {
  std::vector<HeadlessDevice*> order;
  for (HeadlessDevice& device : devices) {
    order.push_back(&device);
  }
  std::stable_partition(order.begin(), order.end(), [](auto* device) { return !device->software; });
  const HeadlessDevice* remaining = nullptr;
  for (HeadlessDevice* device : order) {
    tryOne(*device);
    if (device->trouble.empty() && !device->software) {
      return *device;
    }
    if (device->trouble.empty() && remaining == nullptr) {
      remaining = device;
    }
  }
  if (remaining == nullptr) {
    throw HeadlessTrouble("no graphics device here gives an OpenGL context without a display:\n" +
                          describeDevices(devices));
  }
  return *remaining;
}

}  // namespace

std::string describeDevices(std::span<const HeadlessDevice> devices) {
  std::string lines;
  for (const HeadlessDevice& device : devices) {
    lines += lines.empty() ? "  " : "\n  ";
    lines += std::to_string(device.number) + ": " + device.name;
    lines += device.software ? ", software renderer" : "";
    lines += device.renderNode.empty() ? "" : ", " + device.renderNode;
    lines += device.trouble.empty() ? "" : ": " + device.trouble;
  }
  return lines;
}

HeadlessDevice chooseDevice(std::span<HeadlessDevice> devices, const WantedDevice& wanted,
                            const TryOne& tryOne) {
  if (devices.empty()) {
    throw HeadlessTrouble(
        "EGL lists no graphics device, not even a software renderer; install the card's own driver "
        "or, for Mesa's, the packages libegl-mesa0 and libgl1-mesa-dri.");
  }
  return wanted.device.empty() ? chooseBest(devices, tryOne)
                               : chooseWanted(devices, wanted, tryOne);
}

std::string cardLeftOut(std::span<const HeadlessDevice> devices,
                        const std::vector<std::filesystem::path>& nodes) {
  const auto card = std::find_if(devices.begin(), devices.end(),
                                 [](const HeadlessDevice& device) { return !device.software; });
  if (card != devices.end()) {
    return card->trouble.empty()
               ? "This machine's graphics card " + card->name + " is device " +
                     std::to_string(card->number) + "; unset " + kVariable + " to use it."
               : "The graphics card " + card->name + " cannot be used: " + card->trouble;
  }
  const auto unlisted = std::find_if(nodes.begin(), nodes.end(), [=](const auto& node) {
    return std::none_of(devices.begin(), devices.end(),
                        [&](const HeadlessDevice& device) { return device.renderNode == node; });
  });
  if (unlisted == nodes.end()) {
    return "";
  }
  const std::string forbidden = whyForbidden(*unlisted);
  return "No EGL driver here supports the graphics card behind " + unlisted->string() + ": " +
         (!forbidden.empty()
              ? forbidden
              : "install the card's own, or for Mesa's the packages libegl-mesa0 and "
                "libgl1-mesa-dri.");
}

WantedDevice wantedDevice() {
  const char* const value = std::getenv(kVariable);
  return {value != nullptr ? value : "", kVariable};
}
