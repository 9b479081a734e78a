// Pictures from files and drawn text, as programs have them that never ask anybody.
#include <filesystem>
#include <fstream>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/services/Services.h"

namespace {

namespace fs = std::filesystem;
using Pixel = std::vector<int>;

/// Every test has to leave standard error empty.
class ServicesTest : public testing::Test {
 protected:
  ServicesTest() {
    testing::internal::CaptureStderr();
    fs::create_directory(folder);
  }
  ~ServicesTest() override {
    fs::remove_all(folder);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }
  const fs::path folder = fs::temp_directory_path() / ("services-" + std::to_string(getpid()));
};

Pixel pixel(const Bitmap& picture, int x, int y) {
  const int bytes = picture.bitsPerPixel / 8;
  const auto at = picture.data.begin() + std::ptrdiff_t{y * picture.bytesPerRow + x * bytes};
  return {at, at + bytes};
}

TEST_F(ServicesTest, EveryKindOfPictureIsDecodedIntoTightRows) {
  const std::string path = folder / "picture.png";
  for (const auto& [width, alpha] : {std::pair{1, 0}, {257, 0}, {5000, 0}, {3, 1}}) {
    g_autoptr(GdkPixbuf) plain = gdk_pixbuf_new(GDK_COLORSPACE_RGB, alpha, 8, width, 2);
    gdk_pixbuf_fill(plain, 0x0A141E63);
    gdk_pixbuf_save(plain, path.c_str(), "png", nullptr, nullptr);
    const Bitmap picture = services().imageFromFile(path).value();
    EXPECT_EQ(picture.bytesPerRow, width * (3 + alpha));
    const Pixel expected = {10, 20, 30, 99};
    EXPECT_EQ(pixel(picture, width - 1, 1), Pixel(expected.begin(), expected.end() - 1 + alpha));
  }
  const std::string start = "iVBORw0KGgoAAAANSUhEUgAAAAIA";
  const std::pair<std::string, Pixel> others[] = {
      // grey, of 16 bits, and with a palette
      {"AAABCAAAAADRSSBWAAAAC0lEQVR42mPgkgMAADUAKRgUoNgAAAAASUVORK5CYII=", {30, 30, 30}},
      {"AAABEAIAAAAr0DSeAAAAFUlEQVR42mNgTGZKZk7mShZJlksGAA75ApWYDudkAAAAAElFTkSuQmCC",
       {10, 20, 30}},
      {"AAABAQMAAADO7O3JAAAABlBMVEUBAgMKFB7fePkEAAAACklEQVR42mNwAAAAQgBBhL+OYgAAAABJRU5ErkJggg==",
       {10, 20, 30}}};
  for (const auto& [text, last] : others) {
    gsize size = 0;
    g_autofree guchar* bytes = g_base64_decode((start + text).c_str(), &size);
    std::ofstream(path).write(reinterpret_cast<const char*>(bytes), static_cast<long>(size));
    const Bitmap picture = services().imageFromFile(path).value();
    EXPECT_EQ(picture.bitsPerPixel, 24);
    EXPECT_EQ(pixel(picture, 1, 0), last);
  }
}

TEST_F(ServicesTest, TheResourceIsFoundFromAnyDirectoryAndBrokenFilesGiveWhatIsThere) {
  fs::current_path("/");
  const Bitmap picture = services().imageNamed("OpenGLLogo.jpg").value();
  EXPECT_EQ(picture.data.size(), 256U * 256 * 3);
  EXPECT_GT(pixel(picture, 5, 5)[0], 150);    // red top left
  EXPECT_LT(pixel(picture, 250, 5)[0], 80);   // green top right
  EXPECT_GT(pixel(picture, 5, 250)[2], 150);  // blue bottom left

  const fs::path jpeg = folder / "cut.jpg";
  fs::copy(fs::read_symlink("/proc/self/exe").parent_path() / "resources/OpenGLLogo.jpg", jpeg);
  fs::resize_file(jpeg, fs::file_size(jpeg) / 2);
  EXPECT_EQ(services().imageFromFile(jpeg).value().data.size(), 256U * 256 * 3);
  fs::resize_file(jpeg, 20);
  std::ofstream(folder / "empty.jpg") << "";
  std::ofstream(folder / "text.jpg") << "no picture\n";
  EXPECT_EQ(mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);  // nobody ever writes into it
  for (const char* name : {"cut.jpg", "empty.jpg", "text.jpg", "pipe.jpg", "", "missing.png"}) {
    EXPECT_FALSE(services().imageFromFile(folder / name)) << name;
  }
  for (const int width : {8192, 8193}) {  // a bit a pixel, and no memory of ours for too many
    const fs::path bits = folder / "bits.pbm";
    std::ofstream(bits) << "P4\n" << width << " 8192\n";
    fs::resize_file(bits, 16 + (width + 7) / 8 * 8192);
    EXPECT_EQ(services().imageFromFile(bits).has_value(), width == 8192);
  }
}

TEST_F(ServicesTest, TextStartsAtTheTopLeftWrapsAndLeavesTheRestTransparent) {
  const auto lastInkedRow = [](const std::string& text) {
    const Bitmap canvas = services().drawText({text, "Helvetica", 36, 128, 128, 1, 0.5F, 0});
    Pixel inked;  // indices
    for (int i = 0; i < 128 * 128; ++i) {
      const Pixel at = pixel(canvas, i % 128, i / 128);
      EXPECT_EQ(at, at[3] == 0 ? Pixel(4, 0) : Pixel({255, 128, 0, at[3]}));
      inked.insert(inked.end(), at[3] / 255, i);
    }
    EXPECT_LT(inked.front(), 10 * 128);
    EXPECT_LT(inked.front() % 128, 10);
    return inked.back() / 128;
  };
  EXPECT_NEAR(lastInkedRow("H H"), 27, 4);  // 36 points are 36 pixels
  EXPECT_NEAR(lastInkedRow("H\nH"), 27 + 40, 8);
  EXPECT_EQ(lastInkedRow("HHH HHH"), lastInkedRow("H\nH"));
}

TEST(SilentServices, EndTheProgramWithTheirMessageWhereSomebodyShouldBeAsked) {
  EXPECT_FALSE(services().runOpenPanel());
  EXPECT_EXIT(services().runAlert("Alert", "Please locate resource = x", "OK"),
              testing::ExitedWithCode(1), ": Alert: Please locate resource = x ");
}

}  // namespace
