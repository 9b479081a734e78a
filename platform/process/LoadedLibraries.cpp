#include "platform/process/LoadedLibraries.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <link.h>
#include <sys/stat.h>

namespace {

std::string hexadecimal(const unsigned char* bytes, std::size_t count) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0xF];
  }
  return text;
}

/// Among the notes of a segment; empty where there is none.
std::string buildIdAmong(const unsigned char* notes, std::size_t size, std::size_t alignment) {
  constexpr char kOwner[] = "GNU";  // with its zero
  const auto padded = [=](std::size_t length) {
    return (length + alignment - 1) / alignment * alignment;
  };
  while (size >= sizeof(ElfW(Nhdr))) {
    ElfW(Nhdr) note;
    std::memcpy(&note, notes, sizeof note);
    const std::size_t content = sizeof note + padded(note.n_namesz);
    if (content + note.n_descsz > size) {
      return "";
    }
    if (note.n_type == NT_GNU_BUILD_ID && note.n_namesz == sizeof kOwner &&
        std::memcmp(notes + sizeof note, kOwner, sizeof kOwner) == 0) {
      return hexadecimal(notes + content, note.n_descsz);
    }
    const std::size_t whole = content + padded(note.n_descsz);
    if (whole > size) {
      return "";
    }
    notes += whole;
    size -= whole;
  }
  return "";
}

std::string buildIdOf(const dl_phdr_info& library) {
  const auto isMapped = [&](const ElfW(Phdr) & notes) {
    for (int i = 0; i < library.dlpi_phnum; ++i) {
      const ElfW(Phdr)& part = library.dlpi_phdr[i];
      if (part.p_type == PT_LOAD && (part.p_flags & PF_R) != 0 && notes.p_vaddr >= part.p_vaddr &&
          notes.p_vaddr + notes.p_memsz <= part.p_vaddr + part.p_filesz) {
        return true;
      }
    }
    return false;
  };
  for (int i = 0; i < library.dlpi_phnum; ++i) {
    const ElfW(Phdr)& part = library.dlpi_phdr[i];
    if (part.p_type == PT_NOTE && isMapped(part)) {
      const auto* const notes =
          reinterpret_cast<const unsigned char*>(library.dlpi_addr + part.p_vaddr);
      constexpr std::size_t kWideAlignment = 8;
      const std::size_t alignment = part.p_align == kWideAlignment ? kWideAlignment : 4;
      if (std::string id = buildIdAmong(notes, part.p_memsz, alignment); !id.empty()) {
        return id;
      }
    }
  }
  return "";
}

std::string sizeAndTimeOf(const char* path) {
  struct stat status = {};
  return stat(path, &status) != 0
             ? ""
             : std::to_string(status.st_size) + ' ' + std::to_string(status.st_mtim.tv_sec);
}

}  // namespace

std::vector<LoadedLibrary> loadedLibraries() {
  std::vector<LoadedLibrary> libraries;
  dl_iterate_phdr(
      [](dl_phdr_info* library, std::size_t /*size*/, void* found) {
        if (std::strchr(library->dlpi_name, '/') != nullptr) {
          std::string build = buildIdOf(*library);
          static_cast<std::vector<LoadedLibrary>*>(found)->push_back(
              {library->dlpi_name,
               build.empty() ? sizeAndTimeOf(library->dlpi_name) : std::move(build)});
        }
        return 0;
      },
      &libraries);
  return libraries;
}
