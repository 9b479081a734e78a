/// The engine as a worker's subject: one test object on one context without a window.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it
#include <fmt/format.h>
#include <sched.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "engine/AttributeSetters.h"
#include "engine/SorvantaTest.h"
#include "engine/Support.h"
#include "platform/gl/FixedFunction.h"
#include "platform/gl/RendererLine.h"
#include "platform/headless/DeviceChoice.h"
#include "platform/headless/HeadlessContext.h"
#include "platform/process/LoadedLibraries.h"
#include "platform/process/Sentences.h"
#include "survey/worker/ContextTrouble.h"
#include "survey/worker/FrameClocks.h"
#include "survey/worker/Protocol.h"
#include "survey/worker/Sampler.h"
#include "survey/worker/Symbols.h"
#include "survey/worker/Worker.h"
#include "words/Attributes.h"
#include "words/DrawMethods.h"
#include "words/Primitives.h"

namespace survey {
namespace {

constexpr int kViewSide = 400;

/// As Sorvanta's window has it, a software renderer's figures depend on the heap's history: no two
/// processes of a survey begin with the same one.
std::vector<std::unique_ptr<std::byte[]>> disturbedHeap(std::uint64_t seed) {
  constexpr std::size_t kBlocks = 512;
  constexpr std::size_t kLargest = 16384;
  std::mt19937_64 random(seed);
  std::vector<std::unique_ptr<std::byte[]>> blocks;
  for (std::size_t i = 0; i < kBlocks; ++i) {
    blocks.push_back(std::make_unique<std::byte[]>(1 + random() % kLargest));
  }
  // Half of them go again and leave holes.
  std::erase_if(blocks, [&](const auto& /*block*/) { return random() % 2 == 0; });
  return blocks;
}

/// A number is taken without a trial: this process is the trial.
unsigned int numberOf(const std::string& device) {
  if (!device.empty() &&
      std::all_of(device.begin(), device.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return static_cast<unsigned int>(std::strtoul(device.c_str(), nullptr, 10));
  }
  std::vector<HeadlessDevice> devices = listDevices();
  const WantedDevice wanted = device.empty() ? wantedDevice() : WantedDevice{device, "--device"};
  return chooseDevice(devices, wanted).number;
}

/// The program's own as well: a driver builds on the same ones, and what was preloaded is among
/// them.
std::vector<Library> librariesByPath() {
  std::vector<Library> libraries;
  for (const auto& [path, build] : loadedLibraries()) {
    libraries.push_back({path, build});
  }
  std::sort(libraries.begin(), libraries.end(),
            [](const Library& one, const Library& other) { return one.path < other.path; });
  return libraries;
}

/// The variables that drivers and their loaders heed.
std::vector<std::string> environmentOfDrivers() {
  constexpr std::string_view kBeginnings[] = {"LIBGL_",      "MESA_",
                                              "mesa_",       "GALLIUM_",
                                              "LP_",         "NIR_",
                                              "ZINK_",       "DRI_",
                                              "VK_",         "EGL_",
                                              "__GL_",       "__GLX_",
                                              "__EGL_",      "LD_LIBRARY_PATH=",
                                              "LD_PRELOAD=", "SORVANTA_DEVICE="};
  std::vector<std::string> found;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                    [=](std::string_view beginning) {
                      return std::string_view(*variable).starts_with(beginning);
                    })) {
      found.emplace_back(*variable);
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

/// Whether it stays there; the driver's own threads, made with the context, are free.
bool stayOn(unsigned int core) {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(core, &cores);
  return sched_setaffinity(0, sizeof cores, &cores) == 0;
}

std::vector<NamedAttribute> attributesIn(const std::string& words) {
  std::vector<NamedAttribute> named;
  std::istringstream list(words);
  for (std::string word; list >> word;) {
    named.push_back(attributeNamed(word).value());
  }
  return named;
}

bool contains(const std::vector<NamedAttribute>& attributes, Attribute attribute) {
  return std::any_of(attributes.begin(), attributes.end(),
                     [=](const NamedAttribute& named) { return named.attribute == attribute; });
}

void add(std::string& sentences, std::string_view another) {
  sentences.append(sentences.empty() || another.empty() ? "" : "; ").append(another);
}

/// Without what the method leaves out.
std::string wordsSent(const std::string& words, const SorvantaTest& test,
                      const DrawMethodTraits& method) {
  std::string sent;
  std::istringstream list(words);
  for (std::string word; list >> word;) {
    const Attribute attribute = attributeNamed(word).value().attribute;
    const bool color = attribute == Attribute::kColors || attribute == Attribute::kSecondaryColors;
    if ((color && test.getNormals() && method.sendsArrays) ||
        (attribute == Attribute::kMacros && !method.hasMacroPath)) {
      continue;
    }
    sent += (sent.empty() ? "" : " ") + word;
  }
  return sent;
}

void requireNoTrouble(std::string_view when) {
  if (const std::string trouble = contextTrouble(); !trouble.empty()) {
    throw std::runtime_error(fmt::format("{} {}", trouble, when));
  }
}

void setCalls(CellAnswer& answer, DrawUnit unit, const MeshLayout& layout) {
  const auto vertices = [&] {
    switch (unit) {
      case DrawUnit::kVertex:
        return 1U;
      case DrawUnit::kStrip:
        return layout.verticesPerStrip;
      case DrawUnit::kRow:
        return layout.verticesPerRow;
      case DrawUnit::kModel:
        break;
    }
    return layout.vertexCount;
  }();
  answer.verticesPerCall = vertices;
  answer.callsPerModel = layout.vertexCount / static_cast<double>(vertices);
}

/// Samples are taken between the readings of the clocks.
class SampledClocks final : public FrameObserver {
 public:
  SampledClocks(Sampler& ofProcess, FrameClocks& ofFrame) : sampler(ofProcess), clocks(ofFrame) {}

  void measuringBegins() override {
    clocks.measuringBegins();
    sampler.start();
  }
  void measuringEnded() override {
    sampler.stop();
    clocks.measuringEnded();
  }

 private:
  Sampler& sampler;
  FrameClocks& clocks;
};

class EngineSubject final : public Subject {
 public:
  EngineSubject() = default;
  EngineSubject(const EngineSubject&) = delete;
  EngineSubject& operator=(const EngineSubject&) = delete;
  ~EngineSubject() override;

  Driver begin(const Begin& begin) override;
  CellAnswer set(const Cell& cell) override;
  Frame draw(std::chrono::microseconds leastTime) override;
  Profile profile(std::chrono::microseconds leastTime, int frames) override;

 private:
  void setAttributes(const std::vector<NamedAttribute>& wanted);

  std::vector<std::unique_ptr<std::byte[]>> heap;  ///< what was allocated before the context
  std::optional<HeadlessContext> context;
  PerformanceHistory history;
  std::optional<SorvantaTest> test;
  std::optional<FrameClocks> clocks;
  std::optional<Sampler> sampler;  ///< once it was needed
  std::optional<Symbols> symbols;
  std::optional<Primitive> primitive;  ///< as set last
  std::vector<NamedAttribute> attributes;
};

EngineSubject::~EngineSubject() {
  if (context) {
    glFinish();  // or the driver's own threads may be at work while the process ends
  }
}

Driver EngineSubject::begin(const Begin& begin) {
  heap = disturbedHeap(begin.heapSeed);
  const unsigned int number = numberOf(begin.device);
  context.emplace(number, kViewSide, kViewSide);
  if (const std::string trouble = whyNoFixedFunction(); !trouble.empty()) {
    throw std::runtime_error(trouble);
  }
  test.emplace(&history);
  test->initGL();
  test->setBounds(kViewSide, kViewSide);
  test->setDrawsOffscreen(!begin.onScreen);
  clocks.emplace(begin.core && stayOn(*begin.core) ? begin.core : std::nullopt);
  test->setFrameObserver(&*clocks);
  return {number,
          context->name(),
          glText(GL_VENDOR),
          glText(GL_RENDERER),
          glText(GL_VERSION),
          context->software(),
          librariesByPath(),
          environmentOfDrivers()};
}

CellAnswer EngineSubject::set(const Cell& cell) {
  const DrawMethodWord& row = *drawMethodNamed(cell.method);
  const DrawMethodTraits& traits = traitsOf(row.method);
  // The method comes last: every change would rebuild what it retains.
  test->setDrawMethod(kDrawImmediateMode);
  const std::vector<NamedAttribute> wanted = attributesIn(cell.with);
  setAttributes(wanted);
  if (const Primitive given = primitiveNamed(cell.primitive)->primitive; primitive != given) {
    test->setPrimitive(given);
    primitive = given;
  }
  test->setDetail(cell.detail);

  Support support = supportOf(*test, row.method);
  if (contains(wanted, Attribute::kMacros) && traits.hasMacroPath) {
    if (Support macros = supportOfMacros(); hasFigure(support.as) && !hasFigure(macros.as)) {
      support = std::move(macros);
    }
  }
  CellAnswer answer;
  answer.runsAs = support.as;
  answer.sentence = support.sentence;
  answer.sent = wordsSent(cell.with, *test, traits);
  answer.inCoreProfile = row.inCoreProfile;
  answer.primitivesPerModel = test->modelTriangleCount() / (countsQuads(cell.primitive) ? 2 : 1);
  setCalls(answer, row.unit, test->getLayout());
  if (answer.hasFigure()) {
    test->setDrawMethod(row.method);
    add(answer.sentence, supportOfColors(*test).sentence);
    if (contains(wanted, Attribute::kMacros) && !traits.hasMacroPath) {
      add(answer.sentence, "-m changes nothing here: this method calls nothing through the table");
    }
  }
  requireNoTrouble("while the cell was set");
  return answer;
}

void EngineSubject::setAttributes(const std::vector<NamedAttribute>& wanted) {
  const auto among = [](const std::vector<NamedAttribute>& list, const NamedAttribute& named) {
    return std::find(list.begin(), list.end(), named) != list.end();
  };
  for (const NamedAttribute& named : attributes) {
    if (!among(wanted, named)) {
      setAttribute(*test, named, false);
    }
  }
  for (const NamedAttribute& named : wanted) {
    if (!among(attributes, named)) {
      setAttribute(*test, named, true);
    }
  }
  attributes = wanted;
}

Frame EngineSubject::draw(std::chrono::microseconds leastTime) {
  test->setLeastMeasuredTime(static_cast<std::uint64_t>(leastTime.count()));
  test->draw();
  Frame frame = clocks->lastFrame();
  frame.primitives = test->lastFrame().primitives;
  requireNoTrouble("in a frame");
  return frame;
}

Profile EngineSubject::profile(std::chrono::microseconds leastTime, int frames) {
  if (!sampler) {
    sampler.emplace();
    symbols.emplace();
  }
  Profile profile;
  profile.whyNot = sampler->whyNot();
  SampledClocks sampled(*sampler, *clocks);
  test->setFrameObserver(&sampled);
  std::map<Symbols::Function, std::size_t> counts;
  for (int i = 0; i < frames; ++i) {
    const Frame frame = draw(leastTime);
    profile.primitives += frame.primitives;
    profile.time += static_cast<double>(frame.time());
    const Sampler::Samples samples = sampler->take();
    profile.others += static_cast<double>(samples.ofOthers * Sampler::kPeriod);
    for (const std::uint64_t address : samples.ofThisThread) {
      ++counts[symbols->functionAt(address)];
    }
  }
  test->setFrameObserver(&*clocks);
  for (const auto& [function, count] : counts) {
    profile.functions.push_back({function.name, function.file, function.size,
                                 static_cast<double>(count * Sampler::kPeriod)});
  }
  return profile;
}

}  // namespace

int work(const Descriptor& socket) {
  prctl(PR_SET_NAME, program_invocation_short_name);  // or lists of processes call it "exe"
  std::set_new_handler([] { endWith("there is not enough memory."); });
  EngineSubject subject;
  serve(socket, subject);
  return EXIT_SUCCESS;
}

std::string deviceList() {
  std::vector<HeadlessDevice> found = listDevices();
  for (HeadlessDevice& device : found) {
    tryDevice(device);
  }
  return describeDevices(found);
}

}  // namespace survey
