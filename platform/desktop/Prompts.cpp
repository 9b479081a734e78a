#include "platform/desktop/Prompts.h"

#include <gtk/gtk.h>

#include "platform/desktop/GtkSession.h"
#include "platform/process/Sentences.h"

namespace {

bool canPrompt() {
  static const bool able = [] {
    const bool started = startGtk();
    if (!started) {
      warn("windows cannot be opened on this display; prompts are treated as cancelled.");
    }
    return started;
  }();
  return able;
}

void close(GtkWidget* dialog) {
  gtk_widget_destroy(dialog);
  drainGtkEvents();
}

}  // namespace

void runAlertPrompt(const std::string& title, const std::string& message,
                    const std::string& button) {
  if (!canPrompt()) {
    return;
  }
  g_autofree char* text = g_utf8_make_valid(message.c_str(), -1);
  GtkWidget* const dialog = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_WARNING,
                                                   GTK_BUTTONS_NONE, "%s", text);
  gtk_window_set_title(GTK_WINDOW(dialog), title.c_str());
  gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER);
  gtk_dialog_add_button(GTK_DIALOG(dialog), button.c_str(), GTK_RESPONSE_OK);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
  gtk_dialog_run(GTK_DIALOG(dialog));
  close(dialog);
}

std::optional<std::string> runFilePrompt() {
  if (!canPrompt()) {
    return std::nullopt;
  }
  GtkWidget* const dialog =
      gtk_file_chooser_dialog_new("Open", nullptr, GTK_FILE_CHOOSER_ACTION_OPEN, "Cancel",
                                  GTK_RESPONSE_CANCEL, "Open", GTK_RESPONSE_ACCEPT, nullptr);
  gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);

  // Where the list of recent files is shown first, GTK complains on standard error about the keys
  // of a path that is typed over it.
  g_autofree char* folder = g_get_current_dir();
  gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(dialog), folder);

  // A cancelled chooser still names a file, and a destroyed one names none.
  g_autofree char* path = nullptr;
  if (gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_ACCEPT) {
    path = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(dialog));
  }
  close(dialog);
  return path != nullptr ? std::optional<std::string>(path) : std::nullopt;
}
