#include "tests/support/Process.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string contents(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

/// Asks `done` again and again until it holds or the time is over.
template <typename Done>
bool poll(double seconds, Done done) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  while (!done()) {
    if (Clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

}  // namespace

Process::Process(const std::vector<std::string>& arguments, const std::string& display,
                 const std::string& output) {
  std::string pattern = (std::filesystem::temp_directory_path() / "sorvanta-XXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  id_ = fork();
  if (id_ == 0) {
    const auto redirect = [](const std::string& path, int descriptor) {
      dup2(open(path.c_str(), O_WRONLY | O_CREAT, 0600), descriptor);
    };
    redirect(output.empty() ? folder_ + "/out" : output, STDOUT_FILENO);
    redirect(folder_ + "/err", STDERR_FILENO);
    display.empty() ? unsetenv("DISPLAY") : setenv("DISPLAY", display.c_str(), 1);
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
      words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
  }
}

Process::~Process() {
  wait(0);
  std::filesystem::remove_all(folder_);
}

int Process::wait(double seconds) {
  int status = 0;
  if (status_ == -2 && !poll(seconds, [&] { return waitpid(id_, &status, WNOHANG) == id_; })) {
    signal(SIGKILL);
    waitpid(id_, nullptr, 0);
    status_ = -1;
  } else if (status_ == -2) {
    status_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }
  return status_;
}

void Process::signal(int number) const {
  kill(id_, number);
}

std::string Process::out() const {
  return contents(folder_ + "/out");
}
std::string Process::err() const {
  return contents(folder_ + "/err");
}

bool Process::printed(const std::string& text, double seconds) const {
  return poll(seconds, [&] { return out().find(text) != std::string::npos; });
}

std::string shell(const std::string& command) {
  std::string text;
  FILE* const pipe = popen(command.c_str(), "r");
  for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe)) {
    text += static_cast<char>(character);
  }
  pclose(pipe);
  while (text.ends_with('\n')) {
    text.pop_back();
  }
  return text;
}
