// What Vextrel asks of the operating system. One file per system implements it; nothing else in
// the sources knows which one runs.
//
// All functions are thread-safe unless they say otherwise, as far as the process's environment is
// not being changed at the same time.
#ifndef VEXTREL_PLATFORM_PLATFORM_H
#define VEXTREL_PLATFORM_PLATFORM_H

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <log4cpp/Appender.hh>
#include <memory>
#include <string>

// For an object that has to be there before the module's entry code runs. On Windows all static
// objects are; elsewhere the entry code is a static object itself.
#if defined(__GNUC__)
#define VEXTREL_CONSTRUCTED_FIRST [[gnu::init_priority(101)]]
#else
#define VEXTREL_CONSTRUCTED_FIRST
#endif

namespace vextrel::platform {

// A loaded module, as the loader knows it. Null is no module.
using ModuleHandle = void*;

// Error numbers are those of Windows on every platform, since the log shows them.
inline constexpr std::uint32_t kErrorVariableNotFound = 203;
inline constexpr std::uint32_t kErrorModuleNotFound = 126;
inline constexpr std::uint32_t kErrorBadModuleFormat = 193;

struct VariableRead {
  std::uint32_t count;  // characters read, or the size needed, or 0
  std::uint32_t error;  // why count is 0
};

// Reads an environment variable into `buffer` of `size` bytes, with the contract of
// GetEnvironmentVariableA: the count excludes the NUL when the value fits, and is the size needed,
// NUL included, when it does not; then the buffer is not filled. An empty value reads as a variable
// that is not set.
[[nodiscard]] VariableRead ReadVariable(const char* name, char* buffer, std::uint32_t size);

struct ModuleLoad {
  ModuleHandle module;  // owned by the caller until UnloadModule, null on failure
  std::uint32_t error;  // why module is null
};

// Loads the module at `path`, or takes another loader reference to it.
[[nodiscard]] ModuleLoad LoadModule(const char* path);

// Gives back one loader reference.
void UnloadModule(ModuleHandle module);

// True for the module that this code itself is part of.
[[nodiscard]] bool IsOwnModule(ModuleHandle module);

// The address of the export `name`, or null.
[[nodiscard]] void* FindExport(ModuleHandle module, const char* name);

// The four 16-bit words of the module's file version, most significant first; 0 for a module
// without version information, and on systems whose modules carry none.
[[nodiscard]] std::uint64_t ModuleFileVersion(ModuleHandle module);

// Opens a file for reading as text while other processes may read and write it. The stream is not
// open on failure; a folder is a failure.
[[nodiscard]] std::ifstream OpenTextFile(const std::string& path);

// A new appender to the channel where a log goes that nobody configured: the debugger output on
// Windows, standard error elsewhere.
[[nodiscard]] std::unique_ptr<log4cpp::Appender> MakeDefaultAppender(const std::string& name);

// Keeps the calling thread's last-error values as they are now: whatever happens to them during
// the object's life is undone at its end. Belongs to one thread.
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
