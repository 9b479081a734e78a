// All methods through the real driver: the same picture, and no GL error anywhere.
#include <algorithm>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"
#include "tests/support/Fakes.h"
#include "tests/support/GlWindow.h"

namespace {

constexpr int kSide = 100;
using Pixels = std::vector<unsigned char>;

class Picture : public testing::Test {
 protected:
  Picture() {
    needGlWindow();
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

  /// Draws with every method, which has to give that picture.
  void expectFromAll(const Pixels& reference, const std::string& what, int tolerance = 0) {
    for (const DrawMethodTraits& method : kDrawMethods) {
      test.setDrawMethod(method.method);
      const Pixels picture = frame();
      int difference = 0;
      for (std::size_t i = 0; i < picture.size(); ++i) {
        difference = std::max(difference, std::abs(picture[i] - reference[i]));
      }
      EXPECT_LE(difference, tolerance) << what << ' ' << method.word;
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
  for (const auto& [lit, textured] : {std::pair{true, false}, {false, false}, {false, true}}) {
    applyLook(lit, textured);
    for (const PrimitiveTraits& traits : kPrimitives) {
      const Primitive primitive = traits.primitive;
      test.setPrimitive(primitive);
      for (const unsigned int detail : {12U, 20U}) {
        test.setDetail(detail);
        test.setThrash(detail == 20);
        test.setMacros(primitive % 2 == 0);
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
        EXPECT_GT(painted, primitive <= kQuads ? 4000 : primitive == kPoints ? 100 : 500);
        expectFromAll(reference, std::to_string(primitive), primitive == kQuads ? 1 : 0);
      }
    }
  }
}

TEST_F(Picture, IsNotDisturbedByOtherMethodsPathsOrProviders) {
  applyLook(false, true);
  test.setDetail(10);
  const Pixels reference = frame();
  for (const DrawMethodTraits& first : kDrawMethods) {
    for (const DrawMethodTraits& second : kDrawMethods) {
      test.setDrawMethod(first.method);
      test.draw();
      test.setDrawMethod(second.method);
      EXPECT_TRUE(frame() == reference) << first.word << " then " << second.word;
    }
  }
  test.setMacros(true);
  expectFromAll(reference, "macros");
  // The driver's own choice, pinned memory where it is offered, and those that any driver can run.
  for (const RangeProvider provider :
       {driver().rangeProvider, RangeProvider::kFilled, RangeProvider::kNone}) {
    test.setDrawMethod(kDrawArrays);
    forceRangeProvider(provider);
    test.setDrawMethod(kDrawArraysWithVertArrayRng);
    EXPECT_TRUE(frame() == reference) << static_cast<int>(provider);
    // What the client writes after a frame is seen in the next one, which flushes it.
    GLCoord3* const colors = test.getArrays().colors;
    const GLCoord3 saved = std::exchange(colors[0], {0, 0, 1});
    EXPECT_FALSE(frame() == reference);
    colors[0] = saved;
    EXPECT_TRUE(frame() == reference);
    if (traitsOf(kDrawArraysWithVertArrayObjects).missing(driver()) == nullptr) {
      expectFromAll(reference, std::to_string(static_cast<int>(provider)));
    }
  }
  forceRangeProvider(RangeProvider::kFilled);
  test.setDrawsOffscreen(true);
  expectFromAll(Pixels(reference.size(), 255), "offscreen");
}

}  // namespace
