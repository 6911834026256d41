// Setting up log4cpp, once per process.
//
// None of these functions is thread-safe but GetLogger and GetRootLogger: the others run inside
// GCInitLib and at process detach, which the consumer and the loader serialise.
#ifndef VEXTREL_CALLLOG_LOGGER_SETUP_H
#define VEXTREL_CALLLOG_LOGGER_SETUP_H

#include <log4cpp/Category.hh>
#include <string>

namespace vextrel {

// Installs the default configuration and then the file that GENICAM_GENTL64_VEXTREL_LOG_CONFIG
// names. Does nothing once an attempt has ended without an exception; a failed one is logged,
// leaves the default configuration at ERROR, and is made again by the next call.
void ConfigureLogging();

// One appender to the platform's default channel on the root category, at ERROR.
void ApplyDefaultLogConfig();

// True if the variable named a file that could be opened and applied. Raises std::exceptions: an
// unresolvable reference in the path or a line, or a configuration that log4cpp rejects.
[[nodiscard]] bool LoadLogConfigFromEnv();

// The same for the file at `path`.
[[nodiscard]] bool LoadLogConfigFile(const std::string& path);

// log4cpp's category of that name; log4cpp owns it and keeps it.
[[nodiscard]] log4cpp::Category& GetLogger(const char* name);
[[nodiscard]] log4cpp::Category& GetRootLogger();

// Shuts log4cpp down if it has been configured.
void ShutdownLogging();

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LOGGER_SETUP_H
