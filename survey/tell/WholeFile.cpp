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

void writeBeside(const std::string& path, std::string_view content) {
  std::string beside = path + ".XXXXXX";
  const Descriptor file(mkostemp(beside.data(), O_CLOEXEC));
  if (file.get() < 0) {
    fail(path);
  }
  try {
    const mode_t mask = umask(0);
    umask(mask);
    writeAll(file.get(), content, path);
    if (fchmod(file.get(), 0666 & ~mask) != 0 || fsync(file.get()) != 0 ||
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

/// Through a link, what it points to is replaced.
std::string targetOf(const std::string& path) {
  std::error_code unknown;
  const auto target = std::filesystem::weakly_canonical(path, unknown);
  return unknown ? path : target.string();
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
  const bool beside = isWrittenBeside(path);
  const std::string directory = std::filesystem::path(targetOf(path)).parent_path().string();
  const std::string place = !beside ? path : directory.empty() ? "." : directory;
  if (access(place.c_str(), beside ? W_OK | X_OK : W_OK) != 0) {
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
  }
  return content;
}

}  // namespace survey
