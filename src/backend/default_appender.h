// SPDX-License-Identifier: MIT
// The appender for a log that nobody has configured, implemented by one file for each system.
#ifndef VEXTREL_BACKEND_DEFAULT_APPENDER_H
#define VEXTREL_BACKEND_DEFAULT_APPENDER_H

#include <log4cpp/Appender.hh>
#include <memory>
#include <string>

namespace vextrel::backend {

// Returns a new appender that writes to the debugger output on Windows, and to standard error
// elsewhere. Thread-safe.
[[nodiscard]] std::unique_ptr<log4cpp::Appender> MakeDefaultAppender(const std::string& name);

}  // namespace vextrel::backend

#endif  // VEXTREL_BACKEND_DEFAULT_APPENDER_H
