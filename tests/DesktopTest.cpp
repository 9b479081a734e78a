// The prompts on a desktop.
#include <clocale>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/desktop/GtkServices.h"
#include "tests/support/GlWindow.h"

// Last: macros of Xlib's would spoil GoogleTest's headers.
#include <GL/glx.h>

namespace {

namespace fs = std::filesystem;

/// Answers the next window of that title with xdotool commands, again and again until it is gone: a
/// key may come before the window can take it. It is shown for some seconds first.
void answer(const std::string& title, const std::string& keys, const std::string& seconds = "0") {
  const std::string script = "until w=$(xdotool search --onlyvisible --name '^" + title +
                             "$' | grep .); do sleep 0.1; done; sleep " + seconds +
                             "; while xdotool windowfocus --sync $w " + keys + "; do sleep 1; done";
  const std::string display = DisplayString(glXGetCurrentDisplay());
  std::thread([=] { shell("export DISPLAY=" + display + "; " + script); }).detach();
}

int errorsOfGlut = 0;
int ownIoErrorHandler(Display*) {
  return 0;
}

TEST(Desktop, PromptsAreAnsweredAndLeaveTheProcessAlone) {
  testing::internal::CaptureStderr();
  const fs::path folder = fs::temp_directory_path() / ("desktop-" + std::to_string(getpid()));
  fs::create_directory(folder);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("XDG_DATA_HOME", folder.c_str(), 1);  // the chooser keeps a list of recent files
  needGlWindow();
  EXPECT_EQ(std::system("openbox > /dev/null 2>&1 &"), 0);
  shell("until xprop -root _NET_SUPPORTING_WM_CHECK | grep 'window id'; do sleep 0.1; done");
  setenv("DISPLAY", ":nowhere", 1);  // the prompts come where GLUT's window is
  XSetIOErrorHandler(ownIoErrorHandler);
  XSetErrorHandler([](Display*, XErrorEvent*) { return ++errorsOfGlut; });

  const auto readMessage = [](gpointer message) -> gboolean {
    GtkWidget* const prompt = gtk_grab_get_current();
    if (prompt != nullptr) {
      g_object_get(prompt, "text", message, nullptr);
    }
    return prompt == nullptr ? TRUE : FALSE;
  };
  g_autofree char* message = nullptr;
  g_timeout_add(20, readMessage, &message);
  answer("Alert", "key Return", "1");
  gtkServices().runAlert("Alert", "Please locate resource = x.jpg", "OK");
  EXPECT_STREQ(message, "Please locate resource = x.jpg");
  answer("Open", "key Escape");
  EXPECT_FALSE(gtkServices().runOpenPanel());
  const std::clock_t before = std::clock();
  answer("Alert", "key Return", "2");
  gtkServices().runAlert("Alert", "", "OK");
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC) << "waiting takes processor time";
  const std::string path = folder / "a.png";
  std::ofstream(path) << "any";
  answer("Open", "key ctrl+l key ctrl+a type " + path + " && xdotool key Return");
  EXPECT_EQ(gtkServices().runOpenPanel(), path);

  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
  EXPECT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_DFL);
  EXPECT_EQ(XSetIOErrorHandler(nullptr), ownIoErrorHandler);
  XDestroyWindow(glXGetCurrentDisplay(), 1);
  XSync(glXGetCurrentDisplay(), False);
  EXPECT_EQ(errorsOfGlut, 1);  // errors of GLUT's display go where they went before
  fs::remove_all(folder);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
