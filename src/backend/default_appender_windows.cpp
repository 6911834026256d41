// SPDX-License-Identifier: MIT
#include <log4cpp/Win32DebugAppender.hh>

#include "backend/default_appender.h"

namespace vextrel::backend {

std::unique_ptr<log4cpp::Appender> MakeDefaultAppender(const std::string& name) {
  return std::make_unique<log4cpp::Win32DebugAppender>(name);
}

}  // namespace vextrel::backend
