// SPDX-License-Identifier: MIT
// The address sanitizer identifies a leak by the functions that allocated it, whose names are lost
// once their module is unloaded. So this looks for leaks once per process, before the proxy is
// unloaded instead of at exit.
#include <dlfcn.h>
#include <link.h>
#include <sanitizer/lsan_interface.h>

#include <string_view>

namespace {

bool IsProxy(void* module) {
  link_map* map = nullptr;
  if (::dlinfo(module, RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0) {
    return false;
  }
  const std::string_view name = map->l_name;
  return name.ends_with("/vextrel.cti") || name.ends_with("/vextrel_extended.cti");
}

}  // namespace

// Overrides the system's own, for modules too.
extern "C" [[gnu::visibility("default")]] int dlclose(void* module) {
  using Close = int(void*);
  static auto* const kClose = reinterpret_cast<Close*>(::dlsym(RTLD_NEXT, "dlclose"));
  if (IsProxy(module)) {
    __lsan_do_leak_check();
  }
  return kClose(module);
}
