#include <cstring>

#include <GL/glx.h>
#include <dlfcn.h>

#include "platform/gl/ContextTable.h"

namespace {

using AnyFunction = void (*)();

/// Mesa's table of the current context, where the loaded Mesa exposes it and the current context
/// is one of Mesa's; without such a context there is still a table, but its calls go nowhere.
class MesaTable {
 public:
  MesaTable() {
    void* const library = dlopen("libglapi.so.0", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
      return;
    }
    const auto currentContext = reinterpret_cast<void* (*)()>(dlsym(library, "_glapi_get_context"));
    const auto currentTable =
        reinterpret_cast<AnyFunction* (*)()>(dlsym(library, "_glapi_get_dispatch"));
    slotOf_ = reinterpret_cast<int (*)(const char*)>(dlsym(library, "_glapi_get_proc_offset"));
    if (currentContext != nullptr && currentTable != nullptr && slotOf_ != nullptr &&
        currentContext() != nullptr) {
      table_ = currentTable();
    }
  }

  bool exposed() const { return table_ != nullptr; }

  /// Null where there is no table or no slot of that name.
  AnyFunction entry(const char* name) const {
    const int slot = table_ != nullptr ? slotOf_(name) : -1;
    return slot >= 0 ? table_[slot] : nullptr;
  }

 private:
  int (*slotOf_)(const char*) = nullptr;
  const AnyFunction* table_ = nullptr;
};

template <typename Function>
void fill(ContextEntry<Function>& entry, const MesaTable& mesa, const char* name) {
  AnyFunction function = mesa.entry(name);
  if (function == nullptr) {
    function = glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name));
  }
  if (function != nullptr) {
    entry = reinterpret_cast<Function*>(function);
  }
}

ContextObject lookAt(GLXContext context) {
  const MesaTable mesa;
  ContextObject object{context, mesa.exposed(), {}};
#define GL_DISPATCHED(name, parameters, arguments) fill(object.table.name, mesa, "gl" #name);
#include "platform/gl/EntryPoints.def"
  return object;
}

}  // namespace

CGLContextObj CGLGetCurrentContext() {
  static ContextObject known;
  const GLXContext current = glXGetCurrentContext();
  if (known.renderer != current) {
    known = lookAt(current);
  }
  return &known;
}
