#include "survey/tell/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/process/Descriptor.h"

namespace survey {
namespace {

/// A sitting of a day takes a tenth of it.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

[[noreturn]] void fail(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), path);
}

void writeAll(int descriptor, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const ssize_t written = write(descriptor, content.data(), content.size());
    if (written < 0 && errno != EINTR) {
      fail(path);
    }
    content.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
  }
}

/// That of the file that is replaced, or what a new one gets.
mode_t modeFor(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) {
    constexpr mode_t kPermissions = 0777;
    return status.st_mode & kPermissions;
  }
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void writeBeside(const std::string& path, std::string_view content) {
  std::string beside = path + ".XXXXXX";
  const Descriptor file(mkostemp(beside.data(), O_CLOEXEC));
  if (file.get() < 0) {
    fail(path);
  }
  try {
    writeAll(file.get(), content, path);
    if (fchmod(file.get(), modeFor(path)) != 0 || fsync(file.get()) != 0 ||
        std::rename(beside.c_str(), path.c_str()) != 0) {
      fail(path);
    }
  } catch (...) {
    unlink(beside.c_str());
    throw;
  }
}

bool isWrittenBeside(const std::string& path) {
  std::error_code unknown;
  const auto status = std::filesystem::status(path, unknown);
  return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

/// Through links, also where the last one points to nothing yet.
std::string targetOf(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;
  std::error_code unknown;
  fs::path target = path;
  for (int i = 0; i < kMostLinks && fs::is_symlink(target, unknown); ++i) {
    target = target.parent_path() / fs::read_symlink(target, unknown);
  }
  return target.string();
}

}  // namespace

void requirePlaceFor(const std::string& path) {
  if (path.empty()) {
    return;
  }
  if (std::filesystem::is_directory(path)) {
    errno = EISDIR;
    fail(path);
  }
  if (std::filesystem::exists(path) && access(path.c_str(), W_OK) != 0) {
    fail(path);
  }
  const std::string directory = std::filesystem::path(targetOf(path)).parent_path().string();
  if (isWrittenBeside(path) &&
      access(directory.empty() ? "." : directory.c_str(), W_OK | X_OK) != 0) {
    fail(path);
  }
}

void writeWhole(const std::string& path, std::string_view content) {
  if (isWrittenBeside(path)) {
    writeBeside(targetOf(path), content);
    return;
  }
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (file.get() < 0) {
    fail(path);
  }
  writeAll(file.get(), content, path);
}

std::string wholeFile(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) {
    fail(path);
  }
  std::string content;
  char part[1 << 16];
  for (ssize_t count = 0; (count = read(file.get(), part, sizeof part)) != 0;) {
    if (count < 0 && errno != EINTR) {
      fail(path);
    }
    content.append(part, count > 0 ? static_cast<std::size_t>(count) : 0);
    if (content.size() > kLargestFile) {
      errno = EFBIG;
      fail(path);
    }
  }
  return content;
}

}  // namespace survey
