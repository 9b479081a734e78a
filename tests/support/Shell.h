/// Shell commands, and the private X server that tests run on.
#pragma once

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include <unistd.h>

/// Asks `done` every 20 ms for a minute and a half; whether it became true.
template <typename Done>
bool poll(Done done) {
  for (int left = 4500; !done(); --left) {
    if (left == 0) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

/// What a Bash script prints, errors included. It runs in a directory of its own and for two
/// minutes at most; what it leaves running is ended.
inline std::string shell(const std::string& script) {
  const std::string command =
      "timeout 120 bash 2>&1 <<'END'\ncd $(mktemp -d)\n"
      "trap 'kill $(jobs -p) 2> /dev/null; wait; rm -r $PWD' EXIT\n" +
      script + "\nEND";
  FILE* const pipe = popen(command.c_str(), "r");
  std::string text;
  for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe)) {
    text += static_cast<char>(character);
  }
  pclose(pipe);
  return text;
}

/// Part of the name of the renderer that a test is repeated on; empty where any will do.
inline std::string wantedRenderer() {
  const char* const name = std::getenv("SORVANTA_TEST_RENDERER");
  return name != nullptr ? name : "";
}

/// Starts a server with one screen of 1280 by 1024 pixels and sets $DISPLAY. It ends with this
/// process. Without -noreset it would start over when its last client leaves.
inline void needXServer() {
  const std::string file = "/tmp/display-" + std::to_string(getpid());
  const std::string start = "Xvfb -displayfd 3 -noreset -screen 0 1280x1024x24 3> " + file +
                            " 2> /dev/null & cat; kill $!; rm " + file;
  static FILE* const server = popen(start.c_str(), "we");
  std::string number;
  poll([&] {
    number = shell("cat " + file + " 2> /dev/null");
    return server == nullptr || number.ends_with('\n');
  });
  setenv("DISPLAY", (":" + number.substr(0, number.find('\n'))).c_str(), 1);
}
