#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <log4cpp/OstreamAppender.hh>

#include "platform/platform.h"

namespace vextrel::platform {

VariableRead ReadVariable(const char* name, char* buffer, std::uint32_t size) {
  // A name cannot hold '=', but getenv would look for one that does.
  const char* value = std::strchr(name, '=') == nullptr ? std::getenv(name) : nullptr;
  if (value == nullptr || *value == '\0') {
    return {0, kErrorVariableNotFound};
  }
  const auto length = static_cast<std::uint32_t>(std::strlen(value));
  if (length >= size) {
    return {length + 1, 0};
  }
  std::memcpy(buffer, value, length + std::size_t{1});
  return {length, 0};
}

ModuleLoad LoadModule(const char* path) {
  void* module = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (module != nullptr) {
    return {module, 0};
  }
  // dlopen has no error numbers: these are what Windows says of a file that is not there and of
  // one that is no module.
  return {nullptr, ::access(path, F_OK) == 0 ? kErrorBadModuleFormat : kErrorModuleNotFound};
}

void UnloadModule(ModuleHandle module) {
  ::dlclose(module);
}

bool IsOwnModule(ModuleHandle module) {
  Dl_info own{};
  link_map* map = nullptr;
  return ::dladdr(reinterpret_cast<const void*>(&IsOwnModule), &own) != 0 &&
         ::dlinfo(module, RTLD_DI_LINKMAP, static_cast<void*>(&map)) == 0 &&
         map->l_addr == reinterpret_cast<ElfW(Addr)>(own.dli_fbase);
}

void* FindExport(ModuleHandle module, const char* name) {
  return ::dlsym(module, name);
}

std::uint64_t ModuleFileVersion(ModuleHandle /*module*/) {
  return 0;
}

std::ifstream OpenTextFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return {};
  }
  return std::ifstream(path);
}

std::unique_ptr<log4cpp::Appender> MakeDefaultAppender(const std::string& name) {
  return std::make_unique<log4cpp::OstreamAppender>(name, &std::cerr);
}

LastErrorGuard::LastErrorGuard() noexcept : errno_(errno) {}

LastErrorGuard::~LastErrorGuard() {
  errno = errno_;
}

}  // namespace vextrel::platform
