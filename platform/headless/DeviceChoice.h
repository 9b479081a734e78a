/// Which of the listed devices is used.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/HeadlessDevice.h"
#include "platform/headless/RenderNodes.h"

/// One line per device: number, name, what it is, and its trouble.
std::string describeDevices(std::span<const HeadlessDevice> devices);

struct WantedDevice {
  std::string_view device;  ///< a number, or a part of a name or render node; empty: any
  std::string_view by;      ///< the variable or option that says so, for sentences
};

/// The device that gives a context and is the one wanted: by its number, or by a part of its name
/// or render node that no other has. Where nothing is wanted: the first that is no software
/// renderer, else the first. Tries no more devices than it needs to know. Throws HeadlessTrouble
/// where there is no such device; where that depends on the others, with their list.
HeadlessDevice chooseDevice(std::span<HeadlessDevice> devices, const WantedDevice& wanted,
                            const std::function<void(HeadlessDevice&)>& tryOne = tryDevice);

/// With a software renderer chosen: why it is none of this machine's graphics cards, and what to
/// do, as a sentence; empty where there is no card.
std::string cardLeftOut(std::span<const HeadlessDevice> devices,
                        const std::vector<std::filesystem::path>& nodes = renderNodes());

/// What $SORVANTA_DEVICE wants; any where it is not set.
WantedDevice wantedDevice();
