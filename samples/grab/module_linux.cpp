#include <dlfcn.h>

#include <cstdlib>
#include <string_view>

#include "error.h"
#include "module.h"

namespace grab {

const std::filesystem::path::value_type kPathListSeparator = ':';

// An absolute name, lest the loader look for a bare one in the library path.
Module::Module(const std::filesystem::path& file) {
  const std::string absolute = std::filesystem::absolute(file).string();
  handle = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* const error = dlerror();
    std::string_view reason = error != nullptr ? error : "unknown reason";
    if (reason.starts_with(absolute + ": ")) {
      reason.remove_prefix(absolute.size() + 2);
    }
    throw Error("Cannot load " + PathText(file) + ": " + std::string(reason) + ".");
  }
}

Module::~Module() {
  dlclose(handle);
}

void* Module::Find(const char* name) const {
  return dlsym(handle, name);
}

std::optional<std::filesystem::path::string_type> EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr) {
    return std::nullopt;
  }
  return value;
}

std::filesystem::path PathFromArgument(const char* argument) {
  return argument;
}

std::string PathText(const std::filesystem::path& path) {
  return path.string();
}

}  // namespace grab
