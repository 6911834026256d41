// SPDX-License-Identifier: MIT
// A static object calls DllMain when the module is loaded and unloaded, as Windows does by itself.
#include <log4cpp/Category.hh>

#include "backend/log4cpp_internals.h"
#include "lifecycle/dll_main.h"

namespace {

extern "C" void* __dso_handle;  // NOLINT: the compiler's name for this module

// dlclose runs a module's finalisers before it destroys static objects; process exit runs them
// after.
bool isUnloading = false;
[[gnu::destructor]] void NoteUnloading() {
  isUnloading = true;
}

class LoadedModule {
 public:
  LoadedModule() {
    // Static objects are destroyed in reverse order, so construct log4cpp's hierarchy first: it
    // must outlive this one.
    log4cpp::Category::getRoot();
    vextrel::DllMain(&__dso_handle, vextrel::kModuleLoaded, nullptr);
  }
  ~LoadedModule() {
    vextrel::DllMain(&__dso_handle, vextrel::kModuleUnloaded,
                     isUnloading ? nullptr : &__dso_handle);
    if (!isUnloading) {
      // At process exit, other threads and the consumer's static objects may still call. Their
      // lines go nowhere, but the categories must exist.
      vextrel::backend::ForgetCategories();
    }
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
};

// NOLINTNEXTLINE(cert-err58-cpp): without memory, the module can't be loaded anyway.
const LoadedModule kLoadedModule;

}  // namespace
