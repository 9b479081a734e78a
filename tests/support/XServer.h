/// A private X server for the tests that need one: Xvfb, gone with the object.
#pragma once

#include <string>

#include <sys/types.h>

class XServer {
 public:
  /// Starts a server with one screen of that size and waits until it accepts clients.
  explicit XServer(int width = 1280, int height = 1024);
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// Its name as in $DISPLAY, ":7" for example.
  const std::string& display() const { return display_; }

  /// Ends the server under its clients.
  void kill();

 private:
  pid_t process_ = 0;
  std::string display_;
};
