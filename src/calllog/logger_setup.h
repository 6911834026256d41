// SPDX-License-Identifier: MIT
// Setting up log4cpp, once per process.
//
// GetLogger and GetRootLogger are thread-safe. The other functions aren't: they run inside
// GCInitLib and at process detach, which the consumer and the loader serialise.
#ifndef VEXTREL_CALLLOG_LOGGER_SETUP_H
#define VEXTREL_CALLLOG_LOGGER_SETUP_H

#include <log4cpp/Category.hh>
#include <string>

namespace vextrel {

// Applies the default configuration, then the file that GENICAM_GENTL64_VEXTREL_LOG_CONFIG names.
// Does nothing if an earlier call succeeded; a missing variable or file counts as success (Kept:
// 9). A failure is logged and leaves the default configuration at ERROR, and the next call tries
// again.
void ConfigureLogging();

// Gives the root category one appender, to the platform's default channel, and the priority ERROR.
void ApplyDefaultLogConfig();

// Returns true iff the variable names a file that could be opened and applied. Throws a
// std::exception if a reference in the path or in a line can't be resolved, or if log4cpp rejects
// the configuration.
[[nodiscard]] bool LoadLogConfigFromEnv();

// The same for the file at `path`.
[[nodiscard]] bool LoadLogConfigFile(const std::string& path);

// Returns log4cpp's category of that name. log4cpp owns it.
[[nodiscard]] log4cpp::Category& GetLogger(const char* name);
[[nodiscard]] log4cpp::Category& GetRootLogger();

// Shuts log4cpp down if it has been configured.
void ShutdownLogging();

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LOGGER_SETUP_H
