// SPDX-License-Identifier: MIT
// What the tests need from the operating system.
#ifndef VEXTREL_TESTS_SUPPORT_SYSTEM_H
#define VEXTREL_TESTS_SUPPORT_SYSTEM_H

#include <cstdint>
#include <filesystem>
#include <string>

namespace vextrel_test {

inline constexpr bool kOnWindows =
#if defined(_WIN32)
    true;
#else
    false;
#endif

// A loaded module; the destructor returns it to the loader.
class Module {
 public:
  // On failure IsLoaded() is false.
  explicit Module(const std::filesystem::path& path);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  [[nodiscard]] bool IsLoaded() const { return handle_ != nullptr; }
  [[nodiscard]] void* Handle() const { return handle_; }
  [[nodiscard]] void* FindAddress(const char* name) const;
  template <typename Function>
  [[nodiscard]] Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(FindAddress(name));
  }

 private:
  void* handle_;
};

// True while somebody in this process has the module of that file loaded.
[[nodiscard]] bool IsModuleLoaded(const std::filesystem::path& path);

// Sets an environment variable of this process as the modules in it see it; null removes it.
void SetVariable(const char* name, const char* value);

// True if the environment asks for the tests' long forms.
[[nodiscard]] bool LongTests();

// The folder of the running test program.
[[nodiscard]] std::filesystem::path ProgramFolder();

// The calling thread's last-error value: GetLastError on Windows, errno elsewhere.
[[nodiscard]] std::uint32_t LastError();
void SetLastErrorValue(std::uint32_t value);

[[nodiscard]] std::uint32_t ProcessId();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_SYSTEM_H
