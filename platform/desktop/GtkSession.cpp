#include "platform/desktop/GtkSession.h"

#include <csignal>
#include <cstdlib>

#include <GL/glx.h>
#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>

namespace {

XErrorHandler handlerBefore = nullptr;
XErrorHandler handlerOfGtk = nullptr;

/// GTK's handler ignores errors on displays that are not its own: GLUT's go where they went
/// before, or a window that the server refused would pass unnoticed.
int handleError(Display* display, XErrorEvent* event) {
  GdkDisplay* const gtks = gdk_display_get_default();
  const bool ofGtk = gtks != nullptr && gdk_x11_display_get_xdisplay(gtks) == display;
  return (ofGtk ? handlerOfGtk : handlerBefore)(display, event);
}

/// Puts back the handlers that starting GTK replaces: without its own a dying X server would end
/// the process without a word, and a closed pipe would no longer end it at all.
class KeptHandlers {
 public:
  KeptHandlers() : ioError_(XSetIOErrorHandler(nullptr)), error_(XSetErrorHandler(nullptr)) {
    sigaction(SIGPIPE, nullptr, &brokenPipe_);
    XSetIOErrorHandler(ioError_);
    XSetErrorHandler(error_);
  }
  ~KeptHandlers() {
    sigaction(SIGPIPE, &brokenPipe_, nullptr);
    XSetIOErrorHandler(ioError_);
    handlerBefore = error_;
    handlerOfGtk = XSetErrorHandler(handleError);
  }
  KeptHandlers(const KeptHandlers&) = delete;
  KeptHandlers& operator=(const KeptHandlers&) = delete;

 private:
  struct sigaction brokenPipe_ = {};
  XIOErrorHandler ioError_;
  XErrorHandler error_;
};

bool initialiseGtk() {
  const KeptHandlers handlers;
  // Numbers are parsed and printed in the C locale, whatever the user's is.
  gtk_disable_setlocale();
  // GLUT's display is an X display, also in a session whose desktop speaks something else.
  setenv("GDK_BACKEND", "x11", 1);
  // No modules, and no bus for settings and accessibility: where they are missing GTK would say
  // so on standard error.
  unsetenv("GTK_MODULES");
  setenv("GSETTINGS_BACKEND", "memory", 0);
  setenv("NO_AT_BRIDGE", "1", 0);

  static char program[] = "Sorvanta";
  static char option[] = "--display";
  Display* const ofGlut = glXGetCurrentDisplay();
  char* values[] = {program, option, ofGlut != nullptr ? DisplayString(ofGlut) : nullptr, nullptr};
  int count = ofGlut != nullptr ? 3 : 1;
  char** arguments = values;
  // GLib's socket class makes the process ignore SIGPIPE when it is first used, in the file chooser
  // for one: let that happen now, while the signal handlers are kept.
  g_type_class_ref(G_TYPE_SOCKET);
  return gtk_init_check(&count, &arguments) != FALSE;
}

}  // namespace

bool startGtk() {
  static const bool started = initialiseGtk();
  return started;
}

void drainGtkEvents() {
  while (gtk_events_pending() != FALSE) {
    gtk_main_iteration_do(FALSE);
  }
}
