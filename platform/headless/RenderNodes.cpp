#include "platform/headless/RenderNodes.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>

#include "platform/process/Descriptor.h"

namespace {

std::string joinTheGroup(const std::string& node) {
  struct stat status = {};
  stat(node.c_str(), &status);
  const std::string number = std::to_string(status.st_gid);
  const group* const owner = getgrgid(status.st_gid);
  const std::string name = owner != nullptr ? owner->gr_name : number;
  return node + " may be opened by members of the group " + name +
         " only; become one (sudo adduser $USER " + name +
         ") and log in again, or start the container with --group-add " + number + '.';
}

}  // namespace

std::vector<std::filesystem::path> renderNodes(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> nodes;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(directory, missing)) {
    if (entry.path().filename().string().starts_with("renderD")) {
      nodes.push_back(entry.path());
    }
  }
  std::sort(nodes.begin(), nodes.end());
  return nodes;
}

std::string whyForbidden(const std::filesystem::path& node) {
  const Descriptor file(open(node.c_str(), O_RDWR | O_CLOEXEC));
  if (file.get() >= 0) {
    return "";
  }
  switch (errno) {
    case EACCES:
      return joinTheGroup(node);
    case EPERM:  // the file's mode allows it, the container's rules do not
      return node.string() + " cannot be opened inside this container; start it with --device " +
             node.string() + '.';
    default:
      return "";
  }
}

std::string kernelDriver(const std::filesystem::path& node) {
  std::error_code unknown;
  const std::filesystem::path device = "/sys/class/drm" / node.filename() / "device/driver";
  return std::filesystem::read_symlink(device, unknown).filename().string();
}
