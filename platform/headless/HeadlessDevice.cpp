#include "platform/headless/HeadlessDevice.h"

#include <algorithm>
#include <sstream>

#include "platform/headless/EglDevice.h"
#include "platform/headless/HeadlessContext.h"
#include "platform/headless/IsolatedCall.h"
#include "platform/headless/RenderNodes.h"
#include "platform/headless/Trouble.h"

namespace {

const Suspect kSomeDriver = {"an EGL driver that was asked for its devices",
                             "reinstall it, or leave it out: $__EGL_VENDOR_LIBRARY_FILENAMES names "
                             "the files of those to use, "
                             "which are in /usr/share/glvnd/egl_vendor.d"};

const Suspect kDriver = {"the device's driver", "reinstall it or use another device"};

/// The name of a device on which no context was made yet.
std::string provisionalName(const EglDevice& device) {
  std::string name = device.name();
  if (name.empty()) {
    name = kernelDriver(device.renderNode());
  }
  return name.empty() ? "unnamed device" : name;
}

/// A device's record crosses from process to process as lines of text.
std::string recordOf(bool software, const std::string& renderNode, const std::string& name) {
  return (software ? "1\n" : "0\n") + renderNode + '\n' + name + '\n';
}

bool readRecord(std::istream& records, HeadlessDevice& device) {
  std::string software;
  std::getline(records, software);
  device.software = software == "1";
  std::getline(records, device.renderNode);
  return static_cast<bool>(std::getline(records, device.name));
}

}  // namespace

std::vector<HeadlessDevice> listDevices() {
  std::istringstream records(callIsolated(
      [] {
        std::string text;
        for (const EglDevice& device : eglDevices()) {
          text += recordOf(device.declaredSoftware(), device.renderNode(), provisionalName(device));
        }
        return text;
      },
      kSomeDriver));
  std::vector<HeadlessDevice> devices;
  for (HeadlessDevice device{}; readRecord(records, device); ++device.number) {
    devices.push_back(device);
  }
  return devices;
}

void tryDevice(HeadlessDevice& device) {
  try {
    std::istringstream record(callIsolated(
        [&device] {
          const HeadlessContext context(device.number, 1, 1);
          return recordOf(context.software(), device.renderNode, context.name());
        },
        kDriver));
    readRecord(record, device);
  } catch (const HeadlessTrouble& trouble) {
    device.trouble = trouble.what();
  }
}

bool hasHardwareDevice() {
  if (!renderNodes().empty()) {
    return true;
  }
  try {
    const std::vector<HeadlessDevice> devices = listDevices();
    return std::any_of(devices.begin(), devices.end(),
                       [](const HeadlessDevice& device) { return !device.software; });
  } catch (const HeadlessTrouble&) {
    return false;
  }
}
