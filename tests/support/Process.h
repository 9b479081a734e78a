/// A program run by a test: its output in files, its end within a time limit.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

class Process {
 public:
  /// Starts `arguments` (the program first) on `display`; standard output goes to `output` where
  /// one is given.
  Process(const std::vector<std::string>& arguments, const std::string& display,
          const std::string& output = "");
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The exit status, 128 + signal number for a signal's end, or -1 after a kill for taking longer.
  int wait(double seconds = 60);
  void signal(int number) const;
  pid_t id() const { return id_; }
  std::string out() const;
  std::string err() const;
  /// Whether `text` appeared in the output within the time.
  bool printed(const std::string& text, double seconds = 20) const;

 private:
  std::string folder_;
  pid_t id_;
  int status_ = -2;
};

/// What a shell command prints, without the last line's end.
std::string shell(const std::string& command);
