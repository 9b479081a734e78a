/// The functions of this process by their addresses.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

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

  struct Function {
    std::string name;        ///< empty where the file does not name it
    std::string file;        ///< without its folders; empty for what was made at run time
    std::uint64_t size = 0;  ///< in bytes; 0: not known

    bool operator<(const Function& other) const {
      return std::tie(name, file, size) < std::tie(other.name, other.file, other.size);
    }
  };
  /// The one that an address lies in.
  Function functionAt(std::uint64_t address) const;

 private:
  struct Mapped {
    std::uint64_t end;
    std::string path;
    Dwfl_Module* module;  ///< null where the file tells nothing
  };

  Dwfl* dwfl_;
  std::map<std::uint64_t, Mapped> mapped_;  ///< by where it begins
};

}  // namespace survey
