#include "options.h"

#include <charconv>
#include <cstddef>
#include <string>

#include "error.h"
#include "module.h"

namespace grab {
namespace {

constexpr std::uint64_t kMaxFrames = 1'000'000'000;
constexpr std::uint64_t kMaxTimeoutMs = 86'400'000;

[[nodiscard]] std::uint64_t ParseNumber(std::string_view option, std::string_view text,
                                        std::uint64_t lowest, std::uint64_t highest) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || last != end || value < lowest || value > highest) {
    throw UsageError("Option " + std::string(option) + " needs a whole number from " +
                     std::to_string(lowest) + " to " + std::to_string(highest) + ", not '" +
                     std::string(text) + "'.");
  }
  return value;
}

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view option = arguments[index];
    const auto value = [&]() -> const char* {
      if (++index == arguments.size()) {
        throw UsageError("Option " + std::string(option) + " needs a value.");
      }
      return arguments[index];
    };
    if (option == "--producer") {
      options.producer = PathFromArgument(value());
    } else if (option == "--image") {
      options.image = PathFromArgument(value());
    } else if (option == "--frames") {
      options.frames = ParseNumber(option, value(), 1, kMaxFrames);
    } else if (option == "--timeout") {
      options.timeoutMs = ParseNumber(option, value(), 0, kMaxTimeoutMs);
    } else if (option == "--list") {
      options.list = true;
    } else if (option == "--misuse") {
      options.misuse = true;
    } else if (option == "--help") {
      options.help = true;
    } else {
      throw UsageError("Unknown option '" + std::string(option) + "'; --help lists the options.");
    }
  }
  if (options.list && (options.image || options.misuse)) {
    throw UsageError("Option --list goes with neither --image nor --misuse.");
  }
  return options;
}

std::string_view HelpText() {
  return R"(Usage: grab [OPTION]...
Grabs frames from the first camera that can be opened.

  --producer FILE  load this GenTL producer; without it, those that the
                   environment variable GENICAM_GENTL64_PATH names are tried
                   in turn (folders or .cti files)
  --list           only list the interfaces and devices
  --frames N       grab N frames (default 10)
  --timeout MS     wait at most MS milliseconds for a frame (default 5000)
  --image FILE     write the last frame to FILE as a binary PGM (8 bit)
  --misuse         close badly on purpose, to see a tracing producer report it
  --help           print this text

The exit code is 0 after success, 1 after an error, 2 for a wrong command line.
)";
}

}  // namespace grab
