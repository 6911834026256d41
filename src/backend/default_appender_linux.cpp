// SPDX-License-Identifier: MIT
#include <iostream>
#include <log4cpp/OstreamAppender.hh>

#include "backend/default_appender.h"

namespace vextrel::backend {

std::unique_ptr<log4cpp::Appender> MakeDefaultAppender(const std::string& name) {
  return std::make_unique<log4cpp::OstreamAppender>(name, &std::cerr);
}

}  // namespace vextrel::backend
