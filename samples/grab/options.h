// The command line.
#ifndef VEXTREL_SAMPLES_GRAB_OPTIONS_H
#define VEXTREL_SAMPLES_GRAB_OPTIONS_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace grab {

struct Options {
  std::optional<std::filesystem::path> producer;  // without one: the search path
  std::optional<std::filesystem::path> image;     // where the last frame goes
  std::uint64_t frames = 10;
  std::uint64_t timeoutMs = 5000;  // for one frame
  bool list = false;
  bool misuse = false;
  bool help = false;
};

// Reads the arguments after the program's name. Throws UsageError.
[[nodiscard]] Options ParseOptions(std::span<const char* const> arguments);

// What --help prints.
[[nodiscard]] std::string_view HelpText();

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_OPTIONS_H
