#include "platform/desktop/ObscuringWindow.h"

#include <gtk/gtk.h>

#include "platform/desktop/GtkSession.h"
#include "platform/process/Sentences.h"

namespace {

GdkRectangle firstMonitor() {
  GdkRectangle area = {};
  gdk_monitor_get_geometry(gdk_display_get_monitor(gdk_display_get_default(), 0), &area);
  return area;
}

}  // namespace

ObscuringWindow::ObscuringWindow() {
  if (!startGtk()) {
    endWith("the obscuring window cannot be opened on this display.");
  }
  const GdkRectangle area = firstMonitor();
  window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  GtkWindow* const window = GTK_WINDOW(window_);
  gtk_window_set_title(window, "Obscuring window");
  gtk_window_set_accept_focus(window, FALSE);
  // A window manager would shrink a window of this default size to its work area; one that
  // cannot be smaller it leaves whole.
  gtk_window_set_default_size(window, area.width, area.height);
  gtk_widget_set_size_request(window_, area.width, area.height);
  gtk_window_move(window, area.x, area.y);
  // Nothing may uncover the benchmark window while it is measured.
  g_signal_connect(window_, "delete-event", G_CALLBACK(gtk_true), nullptr);
  orderFront();
}

void ObscuringWindow::orderFront() {
  gtk_window_present(GTK_WINDOW(window_));
  drainGtkEvents();
}

void ObscuringWindow::processEvents() {
  drainGtkEvents();
}
