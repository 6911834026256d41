// SPDX-License-Identifier: MIT
// What Vextrel needs from the operating system, implemented by one file for each system. Apart from
// these, only src/entry and src/backend depend on the system.
//
// All functions are thread-safe, as long as no other thread changes the process's environment.
#ifndef VEXTREL_PLATFORM_PLATFORM_H
#define VEXTREL_PLATFORM_PLATFORM_H

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <string>

// For an object that the module's entry code needs. On Windows, all static objects are constructed
// before that code runs; elsewhere, the entry code is itself the constructor of one.
#if defined(__GNUC__)
#define VEXTREL_CONSTRUCTED_FIRST [[gnu::init_priority(101)]]
#else
#define VEXTREL_CONSTRUCTED_FIRST
#endif

namespace vextrel::platform {

// The loader's handle to a module; null for none.
using ModuleHandle = void*;

// Error numbers are those of Windows on every platform, because the log shows them.
inline constexpr std::uint32_t kErrorVariableNotFound = 203;
inline constexpr std::uint32_t kErrorModuleNotFound = 126;
inline constexpr std::uint32_t kErrorBadModuleFormat = 193;

struct VariableRead {
  std::uint32_t count;  // characters read, the size needed, or 0
  std::uint32_t error;  // why count is 0
};

// Reads an environment variable into `buffer` of `size` bytes, as GetEnvironmentVariableA does: if
// the value fits, `count` is its length without the NUL; if not, `count` is the size needed,
// including the NUL, and the buffer isn't filled. An empty variable counts as not set.
[[nodiscard]] VariableRead ReadVariable(const char* name, char* buffer, std::uint32_t size);

struct ModuleLoad {
  ModuleHandle module;  // owned by the caller until UnloadModule, null on failure
  std::uint32_t error;  // why module is null
};

// Loads the module at `path`, or takes another loader reference to it.
[[nodiscard]] ModuleLoad LoadModule(const char* path);

// Releases one loader reference.
void UnloadModule(ModuleHandle module);

// Returns true iff `module` is the one that contains this code.
[[nodiscard]] bool IsOwnModule(ModuleHandle module);

// Returns the address of the module's export `name`, or null. The exports of libraries that the
// module links don't count.
[[nodiscard]] void* FindExport(ModuleHandle module, const char* name);

// Returns the four 16-bit words of the module's file version, most significant first; 0 for a
// module without version information, and on systems whose modules have none.
[[nodiscard]] std::uint64_t ModuleFileVersion(ModuleHandle module);

// Opens a file for reading as text, shared with other processes for reading and writing. On
// failure, the returned stream isn't open. Opening a folder fails.
[[nodiscard]] std::ifstream OpenTextFile(const std::string& path);

// Saves the calling thread's last-error values, and restores them on destruction. REQUIRES:
// destroyed on the thread that constructed it.
class LastErrorGuard {
 public:
  LastErrorGuard() noexcept;
  ~LastErrorGuard();
  LastErrorGuard(const LastErrorGuard&) = delete;
  LastErrorGuard& operator=(const LastErrorGuard&) = delete;

 private:
  int errno_;
  [[maybe_unused]] std::uint32_t lastError_ = 0;  // Windows has both
};

}  // namespace vextrel::platform

#endif  // VEXTREL_PLATFORM_PLATFORM_H
