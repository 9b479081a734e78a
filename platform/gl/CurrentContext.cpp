#include <array>
#include <string>
#include <string_view>

#include <dlfcn.h>

#include "platform/gl/ContextTable.h"
#include "platform/gl/WindowSystem.h"
#include "platform/process/LoadedLibraries.h"

namespace {

using AnyFunction = void (*)();

/// Where Mesa keeps its tables: a library, by the beginning of its file name, and what the names of
/// its functions begin with there: libglapi, or from Mesa 25 on the driver's own library.
struct TableLibrary {
  std::string_view file;
  std::string functions;
};

const std::array<TableLibrary, 2> kTableLibraries = {{
    {"libglapi.so.", "_glapi_"},
    {"libgallium-", "_mesa_glapi_"},
}};

/// Mesa's table of the current context, where the loaded Mesa exposes it and the current context
/// is one of Mesa's; without such a context there is still a table, but its calls go nowhere.
class MesaTable {
 public:
  MesaTable() {
    for (const auto& [path, build] : loadedLibraries()) {
      const std::string_view file = std::string_view(path).substr(path.rfind('/') + 1);
      for (const TableLibrary& library : kTableLibraries) {
        if (table_ == nullptr && file.starts_with(library.file)) {
          lookInto(path, library.functions);
        }
      }
    }
  }

  bool exposed() const { return table_ != nullptr; }

  /// Null where there is no table or no slot of that name.
  AnyFunction entry(const char* name) const {
    const int slot = table_ != nullptr ? slotOf_(name) : -1;
    return slot >= 0 ? table_[slot] : nullptr;
  }

 private:
  void lookInto(const std::string& path, const std::string& prefix) {
    void* const library = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
      return;
    }
    const auto function = [&](const char* name) { return dlsym(library, (prefix + name).c_str()); };
    const auto currentContext = reinterpret_cast<void* (*)()>(function("get_context"));
    const auto currentTable = reinterpret_cast<AnyFunction* (*)()>(function("get_dispatch"));
    slotOf_ = reinterpret_cast<int (*)(const char*)>(function("get_proc_offset"));
    if (currentContext != nullptr && currentTable != nullptr && slotOf_ != nullptr &&
        currentContext() != nullptr) {
      table_ = currentTable();
    }
  }

  int (*slotOf_)(const char*) = nullptr;
  const AnyFunction* table_ = nullptr;
};

template <typename Function>
void fill(ContextEntry<Function>& entry, const MesaTable& mesa, const char* name) {
  AnyFunction function = mesa.entry(name);
  if (function == nullptr) {
    function = windowSystem().functionAddress(name);
  }
  if (function != nullptr) {
    entry = reinterpret_cast<Function*>(function);
  }
}

ContextObject lookAt(RendererHandle context) {
  const MesaTable mesa;
  ContextObject object{context, mesa.exposed() ? nullptr : windowSystem().addressFunction, {}};
#define GL_DISPATCHED(name, parameters, arguments) fill(object.table.name, mesa, "gl" #name);
#include "platform/gl/EntryPoints.def"
  return object;
}

}  // namespace

CGLContextObj CGLGetCurrentContext() {
  static ContextObject known;
  const RendererHandle current = windowSystem().currentContext();
  if (known.renderer != current) {
    known = lookAt(current);
  }
  return &known;
}
