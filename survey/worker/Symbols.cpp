#include "survey/worker/Symbols.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>

#include <cxxabi.h>
#include <elfutils/libdwfl.h>
#include <link.h>
#include <unistd.h>

namespace survey {
namespace {

const Dwfl_Callbacks kCallbacks = {dwfl_linux_proc_find_elf, dwfl_standard_find_debuginfo, nullptr,
                                   nullptr};

std::string withoutFolders(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string pathOf(const dl_phdr_info& file) {
  if (*file.dlpi_name != '\0') {
    return file.dlpi_name;
  }
  std::error_code ignored;
  return std::filesystem::read_symlink("/proc/self/exe", ignored);  // the program itself
}

/// "draw(int)" for "_Z4drawi".
std::string readable(const char* symbol) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(symbol, nullptr, nullptr, nullptr), &std::free);
  return name ? name.get() : symbol;
}

}  // namespace

Symbols::Symbols() : dwfl_(dwfl_begin(&kCallbacks)) {
  const bool isReported = dwfl_ != nullptr && dwfl_linux_proc_report(dwfl_, getpid()) == 0 &&
                          dwfl_report_end(dwfl_, nullptr, nullptr) == 0;
  // Its own search by address takes gaps between a file's parts for the file.
  const auto add = [&](const dl_phdr_info& file) {
    for (int i = 0; i < file.dlpi_phnum; ++i) {
      const ElfW(Phdr)& part = file.dlpi_phdr[i];
      if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0) {
        const std::uint64_t begin = file.dlpi_addr + part.p_vaddr;
        mapped_[begin] = {begin + part.p_memsz, pathOf(file),
                          isReported ? dwfl_addrmodule(dwfl_, begin) : nullptr};
      }
    }
  };
  dl_iterate_phdr(
      [](dl_phdr_info* file, std::size_t, void* function) {
        (*static_cast<decltype(add)*>(function))(*file);
        return 0;
      },
      const_cast<void*>(static_cast<const void*>(&add)));
}

Symbols::~Symbols() {
  dwfl_end(dwfl_);
}

Symbols::Function Symbols::functionAt(std::uint64_t address) const {
  const auto after = mapped_.upper_bound(address);
  if (after == mapped_.begin() || address >= std::prev(after)->second.end) {
    return {};
  }
  const Mapped& file = std::prev(after)->second;
  GElf_Off offset = 0;
  GElf_Sym symbol{};
  const char* const name =
      file.module == nullptr
          ? nullptr
          : dwfl_module_addrinfo(file.module, address, &offset, &symbol, nullptr, nullptr, nullptr);
  // The nearest symbol before may be another function's, where the file was stripped.
  const bool isIn = name != nullptr && offset < symbol.st_size;
  return {isIn ? readable(name) : "", withoutFolders(file.path), isIn ? symbol.st_size : 0};
}

}  // namespace survey
