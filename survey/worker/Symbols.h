/// The functions of this process by their addresses.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

struct Dwfl;
struct Dwfl_Module;

namespace survey {

class Symbols {
 public:
  /// Of the programs and libraries that are loaded now. Separate debug files are found where
  /// distributions install them.
  Symbols();
  Symbols(const Symbols&) = delete;
  Symbols& operator=(const Symbols&) = delete;
  ~Symbols();

  /// The function that an address lies in, and the file that this is in, without its folders. An
  /// empty function: the file does not name it; an empty file: it was made at run time.
  std::pair<std::string, std::string> functionAt(std::uint64_t address) const;

 private:
  struct Mapped {
    std::uint64_t end;
    std::string path;
    Dwfl_Module* module;  ///< null where the file tells nothing
  };

  Dwfl* session_;
  std::map<std::uint64_t, Mapped> mapped_;  ///< by where it begins
};

}  // namespace survey
