// The four texture functions on a real context, with services that keep what they are asked.
#include <climits>

#include <gtest/gtest.h>

#include "tests/support/Fakes.h"
#include "tests/support/GlContext.h"
#include "textures/Textures.h"

namespace {

using Numbers = std::vector<int>;
using Words = std::vector<std::string>;

/// A picture whose every pixel tells its column and its row from the top.
Bitmap picture(int width, int height, int components = 3, int padding = 0) {
  const int row = width * components + padding;
  Bitmap image{components == 4,
               8 * components,
               row,
               static_cast<float>(width),
               static_cast<float>(height),
               {}};
  for (int i = 0; i < height * row; ++i) {
    const int samples[] = {i % row / components, i / row, 200, 99};
    image.data.push_back(static_cast<std::uint8_t>(samples[i % row % components]));
  }
  return image;
}

/// Of the bound texture, y counted from the bottom.
Numbers texel(int x, int y) {
  static std::uint8_t all[128][128][4];
  glPixelStorei(GL_PACK_ROW_LENGTH, 128);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, all);
  return {all[y][x], all[y][x] + 4};
}

/// Name, width, height, internal format and filter of the bound texture, and the row length left.
Numbers bound() {
  Numbers found(6);
  int* next = found.data();
  glGetIntegerv(GL_TEXTURE_BINDING_2D, next++);
  for (const GLenum size : {GL_TEXTURE_WIDTH, GL_TEXTURE_HEIGHT, GL_TEXTURE_INTERNAL_FORMAT}) {
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, size, next++);
  }
  glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, next++);
  glGetIntegerv(GL_UNPACK_ROW_LENGTH, next);
  return found;
}

class Textures : public testing::Test {
 protected:
  Textures() {
    needGlContext();
    fakeServices = FakeServices();
  }
  ~Textures() override { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); }

  Numbers upload(const Bitmap& image) {
    TextureFromNSImage(image, &name, &width, &height);
    return bound();
  }
  Words load(const std::string& resource) {
    TextureFromResource(resource.c_str(), &name, &width, &height);
    return std::exchange(fakeServices.prompts, {});
  }

  GLuint name = 0;
  int width = -1, height = -1;
};

TEST_F(Textures, StripesFollowPhaseAndColour) {
  glGenTextures(1, &name);
  for (const auto& [phase, first] : std::vector<std::pair<int, int>>{
           {0, 0}, {1, 24}, {2, 16}, {3, 8}, {4, 0}, {-1, 8}, {INT_MAX, 8}}) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 1000);  // as a wide picture leaves it
    GenerateStripeTexture(name, phase, 64, 32, 32, 300, -1);
    EXPECT_EQ(bound(), Numbers({static_cast<int>(name), 64, 32, GL_RGBA, GL_LINEAR, 0}));
    for (int x = 0; x < 64; ++x) {
      const bool coloured = x % 32 >= first && x % 32 < first + 8;
      EXPECT_EQ(texel(x, x % 32), coloured ? Numbers({32, 44, 255, 128}) : Numbers(4, 128))
          << "phase " << phase << ", column " << x;
    }
  }
}

TEST_F(Textures, PicturesAreUprightAndCroppedFromTheBottomLeft) {
  for (const auto& [hasAlpha, bits] : {std::pair{false, 8}, {false, 32}, {false, 48}, {true, 24}}) {
    upload({hasAlpha, bits, 8, 1, 1, std::vector<std::uint8_t>(8)});  // left alone
    EXPECT_EQ(Numbers({static_cast<int>(name), width, height}), Numbers({0, -1, -1}));
  }
  const Numbers large = upload(picture(200, 100));
  const int made = static_cast<int>(name);
  EXPECT_EQ(large, Numbers({made, 128, 64, GL_RGB, GL_LINEAR, 200}));
  EXPECT_EQ(Numbers({width, height}), Numbers({128, 64}));
  EXPECT_EQ(texel(0, 0), Numbers({0, 99, 200, 255}));
  EXPECT_EQ(texel(127, 63), Numbers({127, 36, 200, 255}));
  EXPECT_EQ(upload(picture(1, 1, 4)), Numbers({made, 1, 1, GL_RGBA, GL_LINEAR, 1}));
  EXPECT_EQ(texel(0, 0), Numbers({0, 0, 200, 99}));
  upload(picture(5, 4, 3, 3));  // padding of a whole pixel is skipped
  EXPECT_EQ(texel(3, 3), Numbers({3, 0, 200, 255}));
  EXPECT_EQ(upload(picture(101, 70, 3, 1))[5], 101);  // other padding no row length can express
  EXPECT_EQ(texel(63, 0), Numbers({63, 69, 200, 255}));
  int most = 0;
  glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
  EXPECT_EQ(upload(picture(4 * most, 2)), Numbers({made, most, 2, GL_RGB, GL_LINEAR, 4 * most}));
  EXPECT_EQ(upload(picture(0, 0)), Numbers({made, 1, 1, GL_RGB, GL_LINEAR, 0}));
}

TEST_F(Textures, AMissingResourceIsAskedForAndElseReplacedByABlueLabel) {
  Words prompts = {"Alert|Please locate resource = logo|OK", "panel"};
  fakeServices.pictures["/good"] = picture(16, 9);
  fakeServices.chosen = "/good";
  EXPECT_EQ(load("logo"), prompts);
  EXPECT_EQ(bound()[1] * bound()[2], 16 * 8);
  EXPECT_EQ(load("/good"), Words());

  prompts.emplace_back(
      "Alert|Warning: Substituting a different texture.  This may affect results.|OK");
  for (const auto& answer : {std::optional<std::string>(), std::optional<std::string>("/bad")}) {
    fakeServices.chosen = answer;
    width = -1;
    EXPECT_EQ(load("logo"), prompts);
    EXPECT_EQ(bound(), Numbers({static_cast<int>(name), 128, 128, GL_RGBA, GL_LINEAR, 128}));
    EXPECT_EQ(width, -1);
    EXPECT_EQ(fakeServices.drawn.back(),
              "Helvetica 36 128 128 0 0 1 [ 0 0 0 0 0 0 0 0 0 0 0 0 0 0]");
  }

  // While a prompt is open, nothing is loaded.
  GLuint inner = 0;
  fakeServices.whilePrompting = [&] { TextureFromResource("/good", &inner, &width, &height); };
  load("logo");
  EXPECT_EQ(inner, 0U);
  fakeServices.whilePrompting();
  EXPECT_NE(inner, 0U);
}

}  // namespace
