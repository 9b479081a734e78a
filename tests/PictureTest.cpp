// All methods through the real driver: the same picture, and no GL error anywhere.
#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "engine/Support.h"
#include "platform/gl/Driver.h"
#include "tests/support/Fakes.h"
#include "tests/support/GlContext.h"

namespace {

constexpr int kSide = 40;
constexpr unsigned int kDetail = 32;  ///< the least at which a pass has only ten repetitions
using Pixels = std::vector<unsigned char>;

class Picture : public testing::Test {
 protected:
  Picture() {
    needGlContext();
    fakeClock.step = 100000;  // one pass per frame
    test.initGL();
    test.setBounds(kSide, kSide);
  }

  Pixels frame() {
    test.draw();
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    Pixels pixels(std::size_t{4} * kSide * kSide);
    glReadPixels(0, 0, kSide, kSide, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
  }

  static bool onZink() {
    const std::string renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return renderer.starts_with("zink");
  }

  /// Mesa's zink cuts strips that Vulkan does not know at indices that change from frame to frame.
  bool driverFailsWith(DrawMethod method) {
    const GLenum mode = test.getPrimitive();
    return onZink() && method == kDrawElementsWithRestart &&
           (mode == GL_QUAD_STRIP || mode == GL_POLYGON);
  }

  /// Bytes of a pixel that falls to its neighbour: since Mesa 25 zink transforms what
  /// glArrayElement gives with other roundings, which shows where a line runs between two pixels.
  std::ptrdiff_t strays(DrawMethod method) {
    constexpr std::ptrdiff_t kTwoPixels = 8;
    const bool linesOrPoints = test.getPrimitive() <= GL_LINE_STRIP;
    return onZink() && method == kDrawArrayElement && linesOrPoints ? kTwoPixels : 0;
  }

  /// Draws with every method, which has to give that picture.
  void expectFromAll(const Pixels& reference, const std::string& what, int tolerance = 0) {
    for (const DrawMethodTraits& method : kDrawMethods) {
      if (driverFailsWith(method.method)) {
        continue;
      }
      test.setDrawMethod(method.method);
      const Pixels picture = frame();
      std::ptrdiff_t different = 0;
      for (std::size_t i = 0; i < picture.size(); ++i) {
        different += std::abs(picture[i] - reference[i]) > tolerance ? 1 : 0;
      }
      EXPECT_LE(different, strays(method.method)) << what << ' ' << rowOf(method.method)->word;
    }
  }

  void applyLook(bool lit, bool textured) {
    test.setNormals(lit);
    test.setLighting(1, lit);
    test.setLighting(2, lit);
    test.setVertexColors(!lit);
    test.setSecColor(textured);
    test.setTexturing(0, textured);
    test.setTexturing(3, textured);
  }

  PerformanceHistory history;
  SorvantaTest test{&history};
};

TEST_F(Picture, IsTheSameFromAllMethods) {
  for (const auto& [lit, textured] : {std::pair{true, false}, {false, true}}) {
    applyLook(lit, textured);
    for (int value = kTriStrip; value <= kPoints; ++value) {
      const auto primitive = static_cast<Primitive>(value);
      test.setPrimitive(primitive);
      test.setDetail(value % 2 == 0 ? kDetail : kDetail + 1);
      test.setThrash(value % 4 < 2);
      test.setMacros(value % 2 == 0);
      if (primitive == kQuads) {
        // Drivers may split a quad along either diagonal: make that invisible but for rounding.
        const MeshArrays& a = test.getArrays();
        for (std::uint32_t i = 0; i < test.modelVertexCount(); ++i) {
          const GLCoord3 c = a.secondaryColors[i];
          a.colors[i] = {c.x / 2, c.z / 3, 0.25F};
        }
      }
      test.setDrawMethod(kDrawImmediateMode);
      const Pixels reference = frame();
      const auto painted = std::count_if(reference.begin(), reference.end(),
                                         [](auto component) { return component < 255; });
      EXPECT_GT(painted, kSide * kSide / (primitive <= kQuads ? 2 : 8));
      expectFromAll(reference, std::to_string(primitive), primitive == kQuads ? 1 : 0);
    }
  }
}

TEST_F(Picture, IsNotDisturbedByOtherMethodsPathsOrProviders) {
  applyLook(false, true);
  test.setDetail(kDetail);
  const Pixels reference = frame();
  const auto expectWith = [&](const DrawMethodTraits& method) {
    test.setDrawMethod(method.method);
    EXPECT_TRUE(frame() == reference) << rowOf(method.method)->word;
  };
  for (std::size_t i = 0; i < kDrawMethods.size(); ++i) {
    for (std::size_t j = i + 1; j < kDrawMethods.size(); ++j) {  // each after each other
      expectWith(kDrawMethods[i]);
      expectWith(kDrawMethods[j]);
    }
  }
  test.setMacros(true);
  expectFromAll(reference, "macros");
  const std::string version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
  EXPECT_EQ(supportOfMacros().sentence.empty(), version.find("Mesa") != version.npos) << version;
  // The driver's own choice, pinned memory where it is offered, and those that any driver can run.
  for (const RangeProvider provider :
       {driver().rangeProvider, RangeProvider::kFilled, RangeProvider::kNone}) {
    test.setDrawMethod(kDrawArrays);
    forceRangeProvider(provider);
    test.setDrawMethod(kDrawArraysWithVertArrayRng);
    EXPECT_TRUE(frame() == reference) << static_cast<int>(provider);
    // What the client writes after a frame is seen in the next one, which flushes it.
    GLCoord3* const colors = test.getArrays().colors;
    const std::vector<GLCoord3> saved(colors, colors + test.modelVertexCount());
    std::fill_n(colors, saved.size(), GLCoord3{0, 0, 1});
    EXPECT_FALSE(frame() == reference);
    std::copy(saved.begin(), saved.end(), colors);
    EXPECT_TRUE(frame() == reference);
    if (supportOf(test, kDrawArraysWithVertArrayObjects).as != RunsAs::kRefused) {
      expectFromAll(reference, std::to_string(static_cast<int>(provider)));
    }
  }
  forceRangeProvider(RangeProvider::kFilled);
  test.setDrawsOffscreen(true);
  expectFromAll(Pixels(reference.size(), 255), "offscreen");
}

TEST_F(Picture, CopyTexturesStartWithStripesOfTheirOwn) {
  std::set<std::vector<int>> stripes;  // the greys of the first four
  std::vector<std::uint8_t> texels(std::size_t{4} * 512 * 512);
  for (GLuint name = 1; name <= 64; ++name) {
    int width = 0;
    if (glIsTexture(name) == GL_TRUE) {
      glBindTexture(GL_TEXTURE_2D, name);
      glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    }
    if (width == 512) {
      glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
      stripes.insert({texels[0], texels[32], texels[64], texels[96]});
    }
  }
  EXPECT_EQ(stripes, (std::set<std::vector<int>>{{0, 128, 128, 128},
                                                 {32, 128, 128, 128},
                                                 {128, 128, 128, 64},
                                                 {128, 128, 128, 96},
                                                 {128, 128, 128, 128},
                                                 {128, 128, 160, 128},
                                                 {128, 192, 128, 128},
                                                 {128, 224, 128, 128}}));
}

}  // namespace
