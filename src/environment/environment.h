// SPDX-License-Identifier: MIT
// References to environment variables in paths and configuration lines.
//
// Thread-safe as long as no other thread changes the environment.
#ifndef VEXTREL_ENVIRONMENT_ENVIRONMENT_H
#define VEXTREL_ENVIRONMENT_ENVIRONMENT_H

#include <string>

namespace vextrel {

// Returns `input` with its first "$(NAME)" replaced by the value of the environment variable NAME.
// Further references stay (Kept: 7). Without a complete reference, returns `input`, with each blank
// as "%20" if `escapeSpaces` is true. Throws std::runtime_error if the variable can't be read.
[[nodiscard]] std::string ExpandEnvReference(const std::string& input, bool escapeSpaces);

// Returns the text that printf would print, truncated to 255 characters.
[[nodiscard]]
#if defined(__GNUC__)
[[gnu::format(printf, 1, 2)]]
#endif
std::string
FormatString(const char* format, ...);

// Returns the whole value of an environment variable, or an empty string if it isn't set.
[[nodiscard]] std::string ReadEnvironmentVariable(const char* name);

}  // namespace vextrel

#endif  // VEXTREL_ENVIRONMENT_ENVIRONMENT_H
