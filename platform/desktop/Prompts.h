/// The two modal prompts. While one is open the caller waits, without using the processor. On a
/// display that GTK cannot open, prompts are answered as cancelled and standard error says so
/// once.
#pragma once

#include <optional>
#include <string>

/// Shows `message` in a window called `title` with one button; returns when it is pressed or the
/// window is closed.
void runAlertPrompt(const std::string& title, const std::string& message,
                    const std::string& button);

/// Lets the user choose a file; none when the user cancels.
std::optional<std::string> runFilePrompt();
