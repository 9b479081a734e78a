// Listing, trying and choosing devices, on an EGL of the tests' own.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <regex>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/headless/DeviceChoice.h"
#include "platform/headless/DeviceNames.h"
#include "platform/headless/HeadlessContext.h"
#include "platform/headless/IsolatedCall.h"
#include "platform/headless/RenderNodes.h"
#include "platform/headless/Trouble.h"
#include "tests/support/FakeEgl.h"

namespace {

/// What `call` throws.
template <typename Call>
std::string troubleOf(Call call) {
  try {
    call();
  } catch (const HeadlessTrouble& trouble) {
    return trouble.what();
  }
  return "";
}

constexpr const char* kNamed = "EGL_EXT_device_query_name";
constexpr const char* kSoftware = "EGL_EXT_device_drm_render_node EGL_MESA_device_software";

TEST(HeadlessDevice, ATroubleIsToldAndHidesNoOther) {
  fakeDevices.assign(8, {});
  fakeDevices[0] = {.extensions = kNamed, .name = "Crashing Card", .start = [] {
                      std::cerr << "cannot map memory\n";
                      std::abort();
                      return true;
                    }};
  fakeDevices[1].start = [] {
    std::exit(3);
    return true;
  };
  fakeDevices[2].start = [] { return false; };
  fakeDevices[3].configs.clear();
  fakeDevices[4].listOfExtensions = nullptr;
  fakeDevices[5] = {.extensions = kSoftware, .name = "/dev/dri/no-such", .renderer = "llvmpipe"};
  fakeDevices[6].renderer = "Good Card/PCIe";
  fakeDevices[7] = {.extensions = kSoftware, .name = "", .renderer = "zink (Good Card)"};
  std::vector<HeadlessDevice> devices = listDevices();
  ASSERT_EQ(devices.size(), fakeDevices.size());
  EXPECT_EQ(chooseDevice(devices, {}).number, 6U);
  EXPECT_EQ(devices[5].name, "unnamed device");  // not tried, as a card was there
  std::for_each(devices.begin(), devices.end(), tryDevice);
  const std::regex expected(
      "  0: Crashing Card: the device's driver died of SIGABRT \\(.+\\); .+ It said: cannot map "
      "memory\n"
      "  1: unnamed device: the device's driver ended with status 3; .+\n"
      "  2: unnamed device: the device's driver does not start \\(EGL_NOT_INITIALIZED\\); .+\n"
      "  3: unnamed device: .+ no desktop OpenGL .+\n"
      "  4: unnamed device: .+ no desktop OpenGL .+\n"
      "  5: llvmpipe, software renderer, /dev/dri/no-such\n"
      "  6: Good Card/PCIe\n"
      "  7: zink \\(Good Card\\)");
  EXPECT_TRUE(std::regex_match(describeDevices(devices), expected)) << describeDevices(devices);
  EXPECT_TRUE(hasHardwareDevice());

  fakeDevices = {{.extensions = kSoftware, .name = ""}};
  EXPECT_EQ(hasHardwareDevice(), !renderNodes().empty());
  whileListing = std::abort;
  EXPECT_EQ(hasHardwareDevice(), !renderNodes().empty());
  EXPECT_NE(troubleOf(listDevices).find("an EGL driver that was asked for its devices died"),
            std::string::npos);
  whileListing = [] {};
}

TEST(HeadlessDevice, IsDrawnOnWithTheConfigNearestToAWindows) {
  const FakeConfig best = {{EGL_RED_SIZE, 8}, {EGL_DEPTH_SIZE, 32}};
  std::vector<FakeConfig> configs(7, best);
  configs[0][EGL_DEPTH_SIZE] = 24;
  configs[1][EGL_CONFIG_CAVEAT] = EGL_SLOW_CONFIG;
  configs[2][EGL_SAMPLES] = 4;
  configs[3][EGL_RED_SIZE] = 10;
  configs[4][EGL_ALPHA_SIZE] = 8;
  configs[6][EGL_STENCIL_SIZE] = 8;
  fakeDevices.assign(1, {});
  fakeDevices[0].configs = configs;
  const HeadlessContext context(0, 1, 1);
  EXPECT_EQ(fakeDevices[0].chosen, 5U);
}

/// Devices for choices, which keeps what is tried.
struct Choice {
  std::vector<HeadlessDevice> devices = {
      {0, "Soft", "", true, ""},
      {1, "driver", "/dev/dri/renderD128", false, ""},
      {2, "AMD Radeon RX 6800", "/dev/dri/renderD129", false, ""},
      {3, "AMD Radeon RX 7600", "/dev/dri/renderD130", false, ""}};
  std::string tried;

  std::string wanting(const std::string& wanted) {
    tried.clear();
    std::string chosen;
    const std::string trouble = troubleOf([&] {
      chosen = std::to_string(
          chooseDevice(devices, {wanted, "--device"}, [this](HeadlessDevice& device) {
            tried += std::to_string(device.number);
          }).number);
    });
    return trouble.empty() ? chosen : trouble.substr(0, trouble.find(';'));
  }
};

TEST(DeviceChoice, TakesTheFirstWorkingCardElseASoftwareRenderer) {
  Choice choice;
  EXPECT_EQ(choice.wanting(""), "1");
  EXPECT_EQ(choice.tried, "1");
  choice.devices[1].trouble = "broken.";
  EXPECT_EQ(choice.wanting(""), "2");
  choice.devices[2].trouble = choice.devices[3].trouble = "broken.";
  EXPECT_EQ(choice.wanting(""), "0");
  EXPECT_EQ(choice.tried, "1230");
  choice.devices[0].trouble = "broken, too.";
  EXPECT_EQ(choice.wanting(""),
            "no graphics device here gives an OpenGL context without a display:\n"
            "  0: Soft, software renderer: broken, too.\n"
            "  1: driver, /dev/dri/renderD128: broken.\n"
            "  2: AMD Radeon RX 6800, /dev/dri/renderD129: broken.\n"
            "  3: AMD Radeon RX 7600, /dev/dri/renderD130: broken.");
  choice.devices.clear();
  EXPECT_EQ(choice.wanting("0"), "EGL lists no graphics device, not even a software renderer");
}

TEST(DeviceChoice, TakesTheOneWantedOrNone) {
  Choice choice;
  EXPECT_EQ(choice.wanting("0"), "0");
  EXPECT_EQ(choice.tried, "0");
  EXPECT_EQ(choice.wanting("rx 68"), "2");
  EXPECT_EQ(choice.wanting("7600"), "3");
  EXPECT_EQ(choice.wanting("renderD128"), "1");
  for (const std::string nothing : {"4", "-1", "0x1", "Radeon 6800", "1 "}) {
    EXPECT_EQ(choice.wanting(nothing), "--device=" + nothing + " matches no graphics device");
    EXPECT_EQ(choice.tried, "0123");  // or the list would lack names
  }
  EXPECT_EQ(choice.wanting("radeon"), "--device=radeon matches more than one graphics device");
  choice.devices[3].trouble = "broken.";
  for (const char* broken : {"3", "7600"}) {
    EXPECT_EQ(choice.wanting(broken),
              "the graphics device that --device chooses cannot be used:\n"
              "  3: AMD Radeon RX 7600, /dev/dri/renderD130: broken.");
  }
}

TEST(DeviceChoice, TellsWhyASoftwareRendererIsUsedBesideACard) {
  std::vector<HeadlessDevice> devices = {{0, "Soft", "", true, ""}};
  EXPECT_EQ(cardLeftOut(devices, {}), "");
  EXPECT_TRUE(std::regex_match(cardLeftOut(devices, {"/dev/dri/renderD128"}),
                               std::regex("No EGL driver .* /dev/dri/renderD128: install .*")));
  devices[0].renderNode = "/dev/dri/renderD128";  // a card of this machine's is simulated
  EXPECT_EQ(cardLeftOut(devices, {"/dev/dri/renderD128"}), "");
  devices.push_back({1, "Card", "/dev/dri/renderD129", false, ""});
  EXPECT_EQ(cardLeftOut(devices, {"/dev/dri/renderD128", "/dev/dri/renderD129"}),
            "This machine's graphics card Card is device 1; unset SORVANTA_DEVICE to use it.");
  devices[1].trouble = "broken; mend it.";
  EXPECT_EQ(cardLeftOut(devices, {}), "The graphics card Card cannot be used: broken; mend it.");
}

TEST(DeviceNames, TellRenderersOnTheProcessor) {
  for (const char* software :
       {"llvmpipe (LLVM 15.0.6, 256 bits)", "softpipe", "zink (llvmpipe (LLVM 15.0.6, 256 bits))",
        "virgl (LLVMPIPE (LLVM 12.0.0, 256 bits))", "Software Rasterizer",
        "D3D12 (Microsoft Basic Render Driver)"}) {
    EXPECT_TRUE(isSoftwareRenderer(software)) << software;
  }
  for (const char* card : {"NVIDIA H200/PCIe/SSE2", "Mesa Intel(R) UHD Graphics 630 (CFL GT2)",
                           "AMD Radeon RX 6800 (radeonsi, navi21, LLVM 15.0.6)",
                           "zink Vulkan 1.3(AMD Radeon RX 6800 (RADV NAVI21))"}) {
    EXPECT_FALSE(isSoftwareRenderer(card)) << card;
  }
}

TEST(IsolatedCall, GivesTheAnswerOrEndsTheWait) {
  const Suspect suspect = {"it", "leave it"};
  std::string large(1 << 20, 'x');  // more than a pipe holds
  EXPECT_EQ(callIsolated([&] { return large; }, suspect), large);
  EXPECT_EQ(troubleOf([&] {
              callIsolated([]() -> std::string { throw HeadlessTrouble("no."); }, suspect);
            }),
            "no.");
  EXPECT_EQ(troubleOf([&] {
              callIsolated(
                  [] {
                    std::this_thread::sleep_for(std::chrono::minutes(10));
                    return std::string();
                  },
                  suspect, std::chrono::milliseconds(50));
            }),
            "it does not answer within 0.05 s; leave it, or give it more with SORVANTA_PATIENCE "
            "where it is slow.");
  const std::pair<const char*, int> patiences[] = {
      {"90", 90000}, {"0.5", 500}, {"0", 15000}, {"", 15000}, {"nan", 15000}, {"1e99", 1000000000}};
  for (const auto& [value, milliseconds] : patiences) {
    setenv("SORVANTA_PATIENCE", value, 1);
    EXPECT_EQ(usualPatience().count(), milliseconds) << value;
  }
  unsetenv("SORVANTA_PATIENCE");
  EXPECT_EQ(usualPatience().count(), 15000);
}

TEST(RenderNodes, AreFoundAndForbiddenOnesNameTheGroup) {
  const std::filesystem::path directory = testing::TempDir() + std::to_string(getpid());
  EXPECT_TRUE(renderNodes(directory).empty());
  std::filesystem::create_directory(directory);
  const std::filesystem::path node = directory / "renderD128";
  for (const char* name : {"renderD129", "renderD128", "card0"}) {
    std::ofstream(directory / name).put('\n');
  }
  EXPECT_EQ(renderNodes(directory),
            (std::vector<std::filesystem::path>{node, directory / "renderD129"}));
  EXPECT_EQ(whyForbidden(node), "");
  chmod(node.c_str(), 0);
  const std::string why = callIsolated(
      [&] {
        constexpr uid_t kNobody = 65534;
        if (getuid() == 0 && setuid(kNobody) != 0) {  // nothing is forbidden to root
          return std::string("cannot become nobody");
        }
        return whyForbidden(node);
      },
      {});
  EXPECT_TRUE(std::regex_match(why, std::regex(".*/renderD128 may .* the group (\\w+) only; .*"
                                               "adduser \\$USER \\1.* --group-add " +
                                               std::to_string(getgid()) + "\\.")))
      << why;
  std::filesystem::remove_all(directory);
}

}  // namespace
