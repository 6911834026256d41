// References to environment variables in paths and configuration lines.
//
// Start-up services that stand on the platform alone; the logger set-up uses them, too. Thread-safe
// as far as the environment is not being changed at the same time.
#ifndef VEXTREL_LIFECYCLE_ENVIRONMENT_H
#define VEXTREL_LIFECYCLE_ENVIRONMENT_H

#include <string>

namespace vextrel {

// `input` with its first "$(" NAME ")" replaced by the value of the environment variable NAME; any
// further reference stays as written. Without a complete reference the input comes back, its blanks
// as "%20" if `escapeSpaces` says so. Raises std::runtime_error when the variable cannot be read.
[[nodiscard]] std::string ExpandEnvReference(const std::string& input, bool escapeSpaces);

// The printf-style text, cut at 255 characters.
[[nodiscard]]
#if defined(__GNUC__)
[[gnu::format(printf, 1, 2)]]
#endif
std::string
FormatString(const char* format, ...);

// The whole value of an environment variable; empty when it is not set.
[[nodiscard]] std::string ReadEnvironmentVariable(const char* name);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_ENVIRONMENT_H
