// The services on a desktop: pictures, text and prompts.
#include <clocale>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "tests/support/GlWindow.h"
#include "textures/Services.h"

// Last: macros of Xlib's would spoil GoogleTest's headers.
#include <GL/glx.h>

namespace {

namespace fs = std::filesystem;
using Pixel = std::vector<int>;

/// Every test has to leave standard error empty.
class Desktop : public testing::Test {
 protected:
  Desktop() {
    testing::internal::CaptureStderr();
    fs::create_directory(folder);
  }
  ~Desktop() override {
    fs::remove_all(folder);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  }
  const fs::path folder = fs::temp_directory_path() / ("desktop-" + std::to_string(getpid()));
};

Pixel pixel(const Bitmap& picture, int x, int y) {
  const int bytes = picture.bitsPerPixel / 8;
  const auto at = picture.data.begin() + std::ptrdiff_t{y * picture.bytesPerRow + x * bytes};
  return {at, at + bytes};
}

TEST_F(Desktop, EveryKindOfPictureIsDecodedIntoTightRows) {
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
}

TEST_F(Desktop, TheResourceIsFoundFromAnyDirectoryAndBrokenFilesGiveWhatIsThere) {
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
  for (const char* name : {"cut.jpg", "empty.jpg", "text.jpg", "", "missing.png"}) {
    EXPECT_FALSE(services().imageFromFile(folder / name)) << name;
  }
}

TEST_F(Desktop, TextStartsAtTheTopLeftWrapsAndLeavesTheRestTransparent) {
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

/// Answers the next window of that title with xdotool commands after about two seconds; again and
/// again until it is gone: a key may come before the window can take it.
void answer(const std::string& title, const std::string& keys) {
  const std::string script = "sleep 2; until w=$(xdotool search --onlyvisible --name '^" + title +
                             "$' | grep .); do sleep 0.1; done; while xdotool windowfocus --sync "
                             "$w " +
                             keys + "; do sleep 1; done";
  const std::string display = DisplayString(glXGetCurrentDisplay());
  std::thread([=] { shell("export DISPLAY=" + display + "; " + script); }).detach();
}

int errorsOfGlut = 0;
int ownIoErrorHandler(Display*) {
  return 0;
}

TEST_F(Desktop, PromptsAreAnsweredAndLeaveTheProcessAlone) {
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("XDG_DATA_HOME", folder.c_str(), 1);  // the chooser keeps a list of recent files
  needGlWindow();
  EXPECT_EQ(std::system("openbox > /dev/null 2>&1 &"), 0);
  setenv("DISPLAY", ":nowhere", 1);  // the prompts come where GLUT's window is
  XSetIOErrorHandler(ownIoErrorHandler);
  XSetErrorHandler([](Display*, XErrorEvent*) { return ++errorsOfGlut; });

  const auto readMessage = [](gpointer message) -> gboolean {
    g_object_get(gtk_grab_get_current(), "text", message, nullptr);
    return FALSE;
  };
  g_autofree char* message = nullptr;
  g_timeout_add(1000, readMessage, &message);
  answer("Alert", "key Return");
  services().runAlert("Alert", "Please locate resource = x.jpg", "OK");
  EXPECT_STREQ(message, "Please locate resource = x.jpg");
  answer("Open", "key Escape");
  EXPECT_FALSE(services().runOpenPanel());
  const std::clock_t before = std::clock();
  answer("Alert", "key Return");
  services().runAlert("Alert", "", "OK");
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC) << "waiting takes processor time";
  const std::string path = folder / "a.png";
  std::ofstream(path) << "any";
  answer("Open", "key ctrl+l key ctrl+a type " + path + " && xdotool key Return");
  EXPECT_EQ(services().runOpenPanel(), path);

  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_DFL);
  EXPECT_EQ(XSetIOErrorHandler(nullptr), ownIoErrorHandler);
  XDestroyWindow(glXGetCurrentDisplay(), 1);
  XSync(glXGetCurrentDisplay(), False);
  EXPECT_EQ(errorsOfGlut, 1);  // errors of GLUT's display go where they went before
}

}  // namespace
