// For the address sanitizer alone: a leak is told by the functions that allocated, and their names
// are gone with an unloaded module. So the search for leaks, one for each process, is made before
// the proxy is unloaded, not at the end.
#include <dlfcn.h>
#include <link.h>
#include <sanitizer/lsan_interface.h>

#include <string_view>

namespace {

bool IsProxy(void* module) {
  link_map* map = nullptr;
  return ::dlinfo(module, RTLD_DI_LINKMAP, static_cast<void*>(&map)) == 0 &&
         std::string_view(map->l_name).ends_with("/vextrel.cti");
}

}  // namespace

// Stands in front of the system's own, also for the modules.
extern "C" [[gnu::visibility("default")]] int dlclose(void* module) {
  using Close = int(void*);
  static auto* const close = reinterpret_cast<Close*>(::dlsym(RTLD_NEXT, "dlclose"));
  if (IsProxy(module)) {
    __lsan_do_leak_check();
  }
  return close(module);
}
