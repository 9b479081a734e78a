// The four texture functions on a real context, with services that record what they are asked.

#include <climits>
#include <functional>
#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/GlWindow.h"
#include "textures/Textures.h"

namespace {

using Numbers = std::vector<int>;
using Words = std::vector<std::string>;

struct FakeServices : Services {
  std::map<std::string, Bitmap> pictures;  // by name and by path
  std::optional<std::string> chosen;
  std::function<void()> whilePrompting = [] {};
  Words prompts;
  TextRequest drawn;

  std::optional<Bitmap> imageNamed(const std::string& name) override {
    return pictures.contains(name) ? std::optional(pictures[name]) : std::nullopt;
  }
  std::optional<Bitmap> imageFromFile(const std::string& path) override { return imageNamed(path); }
  Bitmap drawText(const TextRequest& request) override {
    drawn = request;
    return {true, 32, 512, 128, 128, std::vector<std::uint8_t>(512UL * 128)};
  }
  void runAlert(const std::string& title, const std::string& message,
                const std::string& button) override {
    prompts.push_back(title + "|" + message + "|" + button);
    whilePrompting();
  }
  std::optional<std::string> runOpenPanel() override {
    prompts.emplace_back("panel");
    return chosen;
  }
} fake;

/// A picture whose every pixel tells its column and its row from the top.
Bitmap picture(int width, int height, int components = 3, int padding = 0) {
  Bitmap image{components == 4,
               8 * components,
               width * components + padding,
               static_cast<float>(width),
               static_cast<float>(height),
               {}};
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < image.bytesPerRow; ++i) {
      const int samples[] = {i / components, y, 200, 99};
      image.data.push_back(static_cast<std::uint8_t>(samples[i % components]));
    }
  }
  return image;
}

int state(GLenum what) {
  GLint value = -1;
  glGetIntegerv(what, &value);
  return value;
}

/// Of the bound texture, y counted from the bottom.
Numbers texel(int x, int y) {
  static std::uint8_t all[128][128][4];
  GLint width = 0;
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
  glPixelStorei(GL_PACK_ROW_LENGTH, 128);
  EXPECT_LE(width, 128);
  glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, all);
  return {all[y][x], all[y][x] + 4};
}

/// Name, width, height, internal format and filters of the bound texture.
void expectBound(GLuint name, int width, int height, int format) {
  Numbers found = {state(GL_TEXTURE_BINDING_2D), 0, 0, 0, 0, 0};
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &found[1]);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &found[2]);
  glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &found[3]);
  glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &found[4]);
  glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, &found[5]);
  EXPECT_EQ(found, Numbers({static_cast<int>(name), width, height, format, GL_LINEAR, GL_LINEAR}));
}

class TexturesTest : public testing::Test {
 protected:
  void SetUp() override {
    needGlWindow();
    fake = FakeServices();
  }
  void TearDown() override { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); }

  void upload(const Bitmap& image) { TextureFromNSImage(image, &name_, &width_, &height_); }
  Words load(const std::string& name) {
    TextureFromResource(name.c_str(), &name_, &width_, &height_);
    return std::exchange(fake.prompts, {});
  }

  GLuint name_ = 0;
  int width_ = -1, height_ = -1;
};

TEST_F(TexturesTest, StripesFollowPhaseAndColour) {
  glGenTextures(1, &name_);
  const std::vector<std::pair<int, int>> firstColumns = {{0, 0}, {1, 24}, {2, 16},     {3, 8},
                                                         {4, 0}, {-1, 8}, {INT_MAX, 8}};
  for (const auto& [phase, first] : firstColumns) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 1000);  // as a wide picture leaves it
    GenerateStripeTexture(name_, phase, 64, 32, 32, 300, -1);
    expectBound(name_, 64, 32, GL_RGBA);
    for (int x = 0; x < 64; ++x) {
      const bool coloured = x % 32 >= first && x % 32 < first + 8;
      EXPECT_EQ(texel(x, x % 32), coloured ? Numbers({32, 44, 255, 128}) : Numbers(4, 128))
          << "phase " << phase << ", column " << x;
    }
  }
}

TEST_F(TexturesTest, PicturesAreUprightAndCroppedFromTheBottomLeft) {
  upload(picture(200, 100));
  const GLuint made = name_;
  EXPECT_NE(made, 0U);
  EXPECT_EQ(Numbers({width_, height_, state(GL_UNPACK_ROW_LENGTH)}), Numbers({128, 64, 200}));
  expectBound(made, 128, 64, GL_RGB);
  EXPECT_EQ(texel(0, 0), Numbers({0, 99, 200, 255}));
  EXPECT_EQ(texel(127, 63), Numbers({127, 36, 200, 255}));

  upload(picture(1, 1, 4));
  expectBound(made, 1, 1, GL_RGBA);
  EXPECT_EQ(texel(0, 0), Numbers({0, 0, 200, 99}));
  upload(picture(5, 4, 3, 3));  // padding of a whole pixel is skipped
  EXPECT_EQ(texel(3, 3), Numbers({3, 0, 200, 255}));
  upload(picture(101, 70, 3, 1));  // other padding no row length can express
  EXPECT_EQ(state(GL_UNPACK_ROW_LENGTH), 101);
  EXPECT_EQ(texel(63, 0), Numbers({63, 69, 200, 255}));
  upload(picture(0, 0));
  expectBound(made, 1, 1, GL_RGB);
}

TEST_F(TexturesTest, OtherFormatsAreLeftAlone) {
  const std::pair<bool, int> formats[] = {{false, 8}, {false, 32}, {false, 48}, {true, 24}};
  for (const auto& [hasAlpha, bits] : formats) {
    fake.pictures["odd"] = Bitmap{hasAlpha, bits, 8, 1, 1, std::vector<std::uint8_t>(8)};
    EXPECT_EQ(load("odd"), Words());
    EXPECT_EQ(Numbers({static_cast<int>(name_), width_, height_}), Numbers({0, -1, -1}));
  }
}

TEST_F(TexturesTest, AMissingResourceIsAskedForAndElseReplacedByABlueLabel) {
  Words prompts = {"Alert|Please locate resource = logo|OK", "panel"};
  fake.pictures["/good"] = picture(16, 9);
  fake.chosen = "/good";
  EXPECT_EQ(load("logo"), prompts);
  expectBound(name_, 16, 8, GL_RGB);
  EXPECT_EQ(load("/good"), Words());

  prompts.emplace_back(
      "Alert|Warning: Substituting a different texture.  This may affect results.|OK");
  for (const auto& answer : {std::optional<std::string>(), std::optional<std::string>("/bad")}) {
    fake.chosen = answer;
    width_ = -1;
    EXPECT_EQ(load("logo"), prompts);
    expectBound(name_, 128, 128, GL_RGBA);
    EXPECT_EQ(width_, -1);
    EXPECT_EQ(fake.drawn.text + fake.drawn.fontName, " 0 0 0 0 0 0 0 0 0 0 0 0 0 0Helvetica");
    EXPECT_EQ(fake.drawn.fontSize, 36);
    EXPECT_EQ(fake.drawn.red + 10 * fake.drawn.green + 100 * fake.drawn.blue, 100);
  }
  const std::string endless(5000, 'x');
  EXPECT_EQ(load(endless)[0], "Alert|Please locate resource = " + endless + "|OK");
}

TEST_F(TexturesTest, NothingIsLoadedWhileAPromptIsOpen) {
  GLuint inner = 0;
  fake.pictures["inner"] = picture(2, 2);
  fake.whilePrompting = [&] { TextureFromResource("inner", &inner, &width_, &height_); };
  load("logo");
  EXPECT_EQ(inner, 0U);
  fake.whilePrompting();  // no prompt is open any more
  EXPECT_NE(inner, 0U);
}

}  // namespace

Services& services() {
  return fake;
}
