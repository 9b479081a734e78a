/// A titled window that covers the whole first monitor, the benchmark window included.
#pragma once

struct _GtkWidget;  // GTK's own name. NOLINT(bugprone-reserved-identifier)

/// Stays until the process ends. It leaves the keyboard to the benchmark window, whose Escape key
/// ends the run.
class ObscuringWindow {
 public:
  /// Makes the window and brings it to the front. Ends the program with a sentence and status 1
  /// when GTK cannot open the display.
  ObscuringWindow();

  /// Brings the window to the front again.
  void orderFront();

  /// Lets the window paint itself and answer its window manager; cheap enough for every frame.
  static void processEvents();

 private:
  _GtkWidget* window_;
};
