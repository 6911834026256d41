// Everything that differs between the platforms: dynamic modules, the environment and file names.
#ifndef VEXTREL_SAMPLES_GRAB_MODULE_H
#define VEXTREL_SAMPLES_GRAB_MODULE_H

#include <filesystem>
#include <optional>
#include <string>

namespace grab {

// A loaded dynamic module, unloaded at the end of the object's life.
class Module {
 public:
  // Throws Error with the system's reason.
  explicit Module(const std::filesystem::path& file);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  // The address of an exported function, null when there is none of that name.
  [[nodiscard]] void* Find(const char* name) const;

 private:
  void* handle = nullptr;
};

// What separates the entries of GENICAM_GENTL64_PATH.
extern const std::filesystem::path::value_type kPathListSeparator;

// Nothing when the variable is not set.
[[nodiscard]] std::optional<std::filesystem::path::string_type> EnvironmentVariable(
    const char* name);

// A file name given on the command line.
[[nodiscard]] std::filesystem::path PathFromArgument(const char* argument);

// A file name for messages.
[[nodiscard]] std::string PathText(const std::filesystem::path& path);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_MODULE_H
