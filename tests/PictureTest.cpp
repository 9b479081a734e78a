// All methods through the real driver: the same picture, and no GL error anywhere.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"
#include "tests/support/FakeClock.h"
#include "tests/support/GlWindow.h"

namespace {

constexpr int kSide = 100;
using Pixels = std::vector<std::array<unsigned char, 4>>;
constexpr Pixels::value_type kWhite = {255, 255, 255, 255};

bool similar(const Pixels& a, const Pixels& b) {
  return std::equal(a.begin(), a.end(), b.begin(), [](const auto& p, const auto& q) {
    return std::equal(p.begin(), p.end(), q.begin(),
                      [](int x, int y) { return std::abs(x - y) <= 1; });
  });
}

class PictureTest : public testing::Test {
 protected:
  PictureTest() {
    needGlWindow();
    fakeClock.step = 100000;  // one pass per frame
    test.initGL();
    test.setBounds(kSide, kSide);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
  }

  Pixels frame() {
    test.draw();
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    Pixels pixels(kSide * kSide);
    glReadPixels(0, 0, kSide, kSide, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
  }

  /// Draws with every method and compares with the first one's picture.
  void expectOnePicture(const std::string& what, std::ptrdiff_t leastPainted) {
    if (test.getPrimitive() == GL_QUADS) {
      // Drivers may split a quad along either diagonal: make that invisible but for rounding.
      const MeshArrays& a = test.getArrays();
      std::transform(a.secondaryColors, a.secondaryColors + test.modelVertexCount(), a.colors,
                     [](GLCoord3 c) {
                       return GLCoord3{c.x / 2, c.z / 3, 0.25F};
                     });
    }
    test.setDrawMethod(kDrawImmediateMode);
    const Pixels reference = frame();
    EXPECT_GT(kSide * kSide - std::count(reference.begin(), reference.end(), kWhite), leastPainted)
        << what;
    for (const DrawMethodTraits& method : kDrawMethods) {
      test.setDrawMethod(method.method);
      const Pixels picture = frame();
      EXPECT_TRUE(test.getPrimitive() == GL_QUADS ? similar(picture, reference)
                                                  : picture == reference)
          << what << ' ' << method.word;
    }
  }

  PerformanceHistory history;
  SorvantaTest test{&history};
};

struct Look {
  const char* name;
  void (*apply)(SorvantaTest&);
};
const Look kLit = {"lit normals", [](SorvantaTest& t) {
                     t.setNormals(true);
                     t.setLighting(1, true);
                     t.setLighting(2, true);
                   }};
const Look kColored = {"colours", [](SorvantaTest& t) { t.setVertexColors(true); }};
const Look kTextured = {"colours, secondary colours and textures", [](SorvantaTest& t) {
                          t.setVertexColors(true);
                          t.setSecColor(true);
                          t.setTexturing(0, true);
                          t.setTexturing(3, true);
                        }};

std::ostream& operator<<(std::ostream& out, const Look& look) {
  return out << look.name;
}

class LookTest : public PictureTest, public testing::WithParamInterface<Look> {};
INSTANTIATE_TEST_SUITE_P(Looks, LookTest, testing::Values(kLit, kColored, kTextured));

TEST_P(LookTest, AllMethodsPaintTheSame) {
  GetParam().apply(test);
  for (const Primitive primitive :
       {kTriStrip, kTriangles, kQuads, kQuadStrip, kLineStrip, kLines, kPoints}) {
    test.setPrimitive(primitive);
    for (const unsigned int detail : {12U, 20U}) {
      test.setDetail(detail);
      const bool filled = primitive <= kQuads;
      expectOnePicture(
          "primitive " + std::to_string(primitive) + ", detail " + std::to_string(detail),
          filled                 ? 4000
          : primitive == kPoints ? 100
                                 : 500);
    }
  }
}

TEST_F(PictureTest, NoMethodDisturbsTheNext) {
  kColored.apply(test);
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
}

TEST_F(PictureTest, EveryRangeProviderPaintsTheSame) {
  kTextured.apply(test);
  test.setDetail(10);
  const Pixels reference = frame();
  for (const RangeProvider provider :
       {RangeProvider::kPinned, RangeProvider::kFilled, RangeProvider::kNone}) {
    test.setDrawMethod(kDrawArrays);
    forceRangeProvider(provider);
    for (const DrawMethod method : {kDrawArraysWithVertArrayRng, kDrawArraysWithVertArrayObjects}) {
      if (traitsOf(method).missing(driver()) != nullptr) {
        continue;
      }
      test.setDrawMethod(method);
      EXPECT_TRUE(frame() == reference) << static_cast<int>(provider) << traitsOf(method).word;
      // What the client writes after a frame is seen in the next one that flushes it.
      GLCoord3* const colors = test.getArrays().colors;
      std::vector<GLCoord3> saved(colors, colors + test.modelVertexCount());
      std::fill_n(colors, saved.size(), GLCoord3{0, 0, 1});
      EXPECT_EQ(frame() == reference, method == kDrawArraysWithVertArrayObjects);
      std::copy(saved.begin(), saved.end(), colors);
      EXPECT_TRUE(frame() == reference);
    }
  }
}

TEST_F(PictureTest, BothPathsPaintTheSame) {
  kTextured.apply(test);
  test.setDetail(10);
  const Pixels reference = frame();
  test.setMacros(true);
  for (const DrawMethodTraits& method : kDrawMethods) {
    test.setDrawMethod(method.method);
    EXPECT_TRUE(frame() == reference) << method.word;
  }
}

TEST_F(PictureTest, OffscreenPaintsNothing) {
  test.setDrawsOffscreen(true);
  const Pixels pixels = frame();
  EXPECT_EQ(std::count(pixels.begin(), pixels.end(), kWhite), kSide * kSide);
}

TEST_F(PictureTest, NoCombinationOfSettingsLeavesAnError) {
  // Every pair of method and primitive; the other settings change at different paces, so that
  // every pair of them comes up too.
  unsigned int n = 0;
  for (const PrimitiveTraits& primitive : kPrimitives) {
    for (const DrawMethodTraits& method : kDrawMethods) {
      const auto bit = [n](unsigned int i) { return (n >> i & 1) != 0; };
      test.setNormals(bit(0));
      test.setVertexColors(bit(1));
      test.setSecColor(bit(2));
      test.setTexturing(0, bit(3));
      test.setTexturing(1, bit(3));
      test.setLighting(0, bit(4));
      test.setThrash(bit(5));
      test.setMacros(bit(6));
      test.setRotate(n % 5 == 0);
      const unsigned int details[] = {1, 3, 64};
      test.setDetail(details[n % 3]);
      test.setPrimitive(primitive.primitive);
      test.setDrawMethod(method.method);
      EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << method.word << ' ' << primitive.mode;
      test.draw();
      EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << method.word << ' ' << primitive.mode;
      n += 37;
    }
  }
}

}  // namespace
