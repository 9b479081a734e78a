// The services on a desktop. What opens windows runs in a process of its own, on a private X
// server, and has to leave standard error empty.

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/desktop/ObscuringWindow.h"
#include "tests/support/GlWindow.h"
#include "textures/Services.h"

// Last: macros of Xlib's would spoil GoogleTest's headers.
// clang-format off
#include <GL/freeglut.h>
#include <GL/glx.h>
// clang-format on

namespace {

namespace fs = std::filesystem;
using Pixel = std::vector<int>;

/// A directory for a test's files, removed with the object.
class Folder {
 public:
  Folder() : path_(fs::temp_directory_path() / ("desktop-test-" + std::to_string(getpid()))) {
    fs::create_directory(path_);
  }
  ~Folder() { fs::remove_all(path_); }
  std::string operator/(const std::string& name) const { return path_ / name; }

 private:
  fs::path path_;
};

Pixel pixel(const Bitmap& picture, int x, int y) {
  const int bytes = picture.bitsPerPixel / 8;
  const auto at = picture.data.begin() + std::ptrdiff_t{y * picture.bytesPerRow + x * bytes};
  return {at, at + bytes};
}

/// Saves a picture that is the redder the further right and the greener the further down.
std::string saved(const std::string& path, const char* type, int width, int height, int channels) {
  g_autoptr(GdkPixbuf) ramps =
      gdk_pixbuf_new(GDK_COLORSPACE_RGB, channels == 4 ? TRUE : FALSE, 8, width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int samples[] = {x % 256, y, 7, 99};
      const std::ptrdiff_t offset = y * gdk_pixbuf_get_rowstride(ramps) + x * channels;
      std::copy_n(samples, channels, gdk_pixbuf_get_pixels(ramps) + offset);
    }
  }
  EXPECT_TRUE(gdk_pixbuf_save(ramps, path.c_str(), type, nullptr, nullptr));
  return path;
}

TEST(PicturesTest, EveryKindOfPictureGetsTightRows) {
  const Folder folder;
  for (const auto& [width, height, channels] :
       std::vector<std::array<int, 3>>{{1, 1, 3}, {257, 5, 3}, {5000, 2, 3}, {3, 3, 4}}) {
    const std::string path = saved(folder / "ramps.png", "png", width, height, channels);
    const Bitmap picture = services().imageFromFile(path).value();
    EXPECT_EQ(Pixel({picture.hasAlpha, picture.bitsPerPixel, picture.bytesPerRow}),
              Pixel({channels == 4, 8 * channels, width * channels}));
    Pixel last = {(width - 1) % 256, height - 1, 7, 99};
    last.resize(static_cast<std::size_t>(channels));
    EXPECT_EQ(pixel(picture, width - 1, height - 1), last);
  }
  // Two pixels each of 8-bit grey, 16-bit colour and a palette.
  const std::vector<std::pair<std::string, Pixel>> others = {
      {"CAAAAADRSSBWAAAAC0lEQVR42mPgOgEAAN8A09iF0q4AAAAASUVORK5CYII=", {200, 200, 200}},
      {"EAIAAAAr0DSeAAAAFUlEQVR42mNgYGRgYmDm4j5xUo4BAAZpAct7ox/vAAAAAElFTkSuQmCC", {10, 200, 30}},
      {"CAMAAADD/I+4AAAABlBMVEUBAgMKyB7y9XMXAAAAC0lEQVR42mNgYAQAAAQAAizeSK0AAAAASUVORK5CYII=",
       {10, 200, 30}}};
  for (const auto& [end, second] : others) {
    gsize size = 0;
    g_autofree guchar* bytes =
        g_base64_decode(("iVBORw0KGgoAAAANSUhEUgAAAAIAAAAB" + end).c_str(), &size);
    std::ofstream(folder / "two.png") << std::string(bytes, bytes + size);
    EXPECT_EQ(pixel(services().imageFromFile(folder / "two.png").value(), 1, 0), second);
  }
}

TEST(PicturesTest, BrokenFilesGiveNoPictureOrThePartThatIsThere) {
  const Folder folder;
  const std::string jpeg = saved(folder / "picture.jpg", "jpeg", 256, 256, 3);
  fs::resize_file(jpeg, fs::file_size(jpeg) / 2);
  EXPECT_EQ(services().imageFromFile(jpeg).value().data.size(), 256U * 256 * 3);
  fs::resize_file(jpeg, 20);
  std::ofstream(folder / "empty.jpg") << "";
  std::ofstream(folder / "text.jpg") << "no picture\n";
  for (const std::string name : {"picture.jpg", "empty.jpg", "text.jpg", "", "missing.png"}) {
    EXPECT_FALSE(services().imageFromFile(folder / name)) << name;
  }
}

TEST(PicturesTest, TheResourceIsFoundFromAnyDirectory) {
  fs::current_path("/");
  const Bitmap picture = services().imageNamed("OpenGLLogo.jpg").value();
  EXPECT_EQ(picture.bitsPerPixel, 24);
  EXPECT_EQ(picture.data.size(), 256U * 256 * 3);
  EXPECT_GT(pixel(picture, 5, 5)[0], 150);    // red top left
  EXPECT_LT(pixel(picture, 250, 5)[0], 80);   // green top right
  EXPECT_GT(pixel(picture, 5, 250)[2], 150);  // blue bottom left
  EXPECT_FALSE(services().imageNamed(""));
}

TEST(DrawnTextTest, StartsAtTheTopLeftWrapsAndLeavesTheRestTransparent) {
  const auto lastInkedRow = [](const std::string& text) {
    const Bitmap canvas = services().drawText({text, "Helvetica", 36, 128, 128, 1, 0.5F, 0});
    int left = 128, top = 128, bottom = -1;
    for (int i = 0; i < 128 * 128; ++i) {
      const Pixel at = pixel(canvas, i % 128, i / 128);
      EXPECT_EQ(at, at[3] == 0 ? Pixel(4, 0) : Pixel({255, 128, 0, at[3]}));
      if (at[3] == 255) {
        left = std::min(left, i % 128);
        top = std::min(top, i / 128);
        bottom = i / 128;
      }
    }
    EXPECT_TRUE(left < 10 && top < 10) << left << ", " << top;
    return bottom;
  };
  EXPECT_NEAR(lastInkedRow("H H"), 27, 4);  // 36 points are 36 pixels
  EXPECT_NEAR(lastInkedRow("H\nH"), 27 + 40, 8);
  EXPECT_EQ(lastInkedRow("HHH HHH"), lastInkedRow("H\nH"));
  EXPECT_GT(lastInkedRow("H H H H H H H H H H H H H H H H H H"), 120);
}

/// In a test's own process: what does not hold is said on standard error, which has to stay empty.
void expect(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "not so: %s\n", what);
  }
}

/// Answers the next window of that title by xdotool commands, when it has stood there for a
/// second. Notes its words and how much processor time that second took.
struct Answer {
  Answer(std::string windowTitle, const std::string& keys)
      : title(std::move(windowTitle)),
        // Again and again until it is gone: a key may come before the window can take it.
        command("export DISPLAY=" + std::string(DisplayString(glXGetCurrentDisplay())) +
                "; { w=$(xdotool search --onlyvisible --name '^" + title + "$' | tail -n 1);" +
                " while xdotool windowfocus --sync $w " + keys +
                "; do sleep 1; done; } >/dev/null 2>&1 &") {
    g_timeout_add(
        100, [](gpointer self) { return static_cast<Answer*>(self)->look(); }, this);
  }
  gboolean look() {
    g_autoptr(GList) windows = gtk_window_list_toplevels();
    for (GList* next = windows; next != nullptr; next = next->next) {
      auto* const window = static_cast<GtkWidget*>(next->data);
      const char* const shown = gtk_window_get_title(GTK_WINDOW(window));
      if (gtk_widget_get_mapped(window) != FALSE && shown != nullptr && shown == title) {
        if (GTK_IS_MESSAGE_DIALOG(window)) {
          g_autofree char* text = nullptr;
          g_object_get(window, "text", &text, nullptr);
          message = text;
        }
        before = ++ticks == 5 ? std::clock() : before;
      }
    }
    if (ticks < 15) {
      return TRUE;
    }
    busySeconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    expect(std::system(command.c_str()) == 0, "xdotool starts");
    return FALSE;
  }
  std::string title, command, message;
  std::clock_t before = 0;
  double busySeconds = 100;
  int ticks = 0;
};

/// A benchmark window on a private X server, with a window manager if one is named.
void openDesktop(const std::string& manager) {
  needGlWindow();
  const std::string start =
      manager +
      " >/dev/null 2>&1 & for i in $(seq 400); do xprop -root _NET_SUPPORTING_WM_CHECK |" +
      " grep -q window && exit 0; sleep 0.05; done; exit 1";
  expect(manager.empty() || std::system(start.c_str()) == 0, "the window manager starts");
}

int errorsOfGlut = 0;
int ownIoErrorHandler(Display*) {
  return 0;
}

[[noreturn]] void usePrompts(const Folder& folder) {
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("XDG_DATA_HOME", (folder / "").c_str(), 1);  // the chooser keeps a list of recent files
  openDesktop("openbox");
  setenv("DISPLAY", ":nowhere", 1);  // the prompts come where GLUT's window is
  XSetIOErrorHandler(ownIoErrorHandler);
  XSetErrorHandler([](Display*, XErrorEvent*) { return ++errorsOfGlut; });

  const Answer ok("Alert", "key Return");
  services().runAlert("Alert", "Please locate resource = x.jpg", "OK");
  expect(ok.message == "Please locate resource = x.jpg", "the alert's words");
  expect(ok.busySeconds < 0.2, "waiting takes no processor time");
  const Answer cancel("Open", "key Escape");
  expect(!services().runOpenPanel(), "a cancelled chooser gives nothing");
  const std::string path = saved(folder / "a.png", "png", 2, 2, 3);
  const Answer choose("Open", "key ctrl+l key ctrl+a type " + path + " && xdotool key Return");
  expect(services().runOpenPanel() == path, "the chosen path");

  expect(std::setlocale(LC_ALL, nullptr) == std::string("C"), "the locale is kept");
  expect(std::signal(SIGPIPE, SIG_DFL) == SIG_DFL, "SIGPIPE is kept");
  expect(XSetIOErrorHandler(nullptr) == ownIoErrorHandler, "the I/O error handler is kept");
  XDestroyWindow(glXGetCurrentDisplay(), 1);
  XSync(glXGetCurrentDisplay(), False);
  expect(errorsOfGlut == 1, "errors of GLUT's display go where they went before");
  expect(glGetError() == GL_NO_ERROR, "no GL error");
  std::exit(0);
}

TEST(PromptsTest, AreAnsweredAndLeaveTheProcessAlone) {
  const Folder folder;
  EXPECT_EXIT(usePrompts(folder), testing::ExitedWithCode(0), "^$");
}

/// Whether the topmost window covers the whole screen, or leaves it open, within half a minute.
bool screenGetsCovered(bool covered = true) {
  Display* const display = glXGetCurrentDisplay();
  for (int attempt = 0; attempt < 3000; ++attempt) {
    ObscuringWindow::processEvents();
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    XWindowAttributes top = {};
    do {  // window managers keep tiny windows of their own on top
      XGetWindowAttributes(display, children[--count], &top);
    } while (count > 0 && (top.map_state != IsViewable || top.width < 100));
    XFree(children);
    if (covered ==
        (top.x <= 0 && top.y <= 0 && top.x + top.width >= 1280 && top.y + top.height >= 1024)) {
      return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

[[noreturn]] void coverScreen(const std::string& manager) {
  openDesktop(manager);
  ObscuringWindow window;
  expect(screenGetsCovered(), "covered when made");
  glutPopWindow();
  glutMainLoopEvent();
  expect(screenGetsCovered(false), "uncovered by the benchmark window");
  window.orderFront();
  expect(screenGetsCovered(), "covered when ordered front");
  std::exit(0);
}

TEST(ObscuringWindowTest, CoversTheScreenWithAndWithoutAWindowManager) {
  for (const std::string manager : {"", "openbox", "metacity"}) {
    EXPECT_EXIT(coverScreen(manager), testing::ExitedWithCode(0), "^$") << manager;
  }
}

TEST(NoDisplayTest, PromptsCountAsCancelledAndNothingCanBeObscured) {
  setenv("DISPLAY", ":nowhere", 1);
  const auto prompts = [] {
    services().runAlert("Alert", "text", "OK");
    std::exit(services().runOpenPanel() ? 1 : 0);
  };
  EXPECT_EXIT(prompts(), testing::ExitedWithCode(0), "^Sorvanta: [^\n]*cancelled.\n$");
  EXPECT_EXIT(ObscuringWindow(), testing::ExitedWithCode(1), "^Sorvanta: [^\n]*obscuring[^\n]*\n$");
}

}  // namespace
