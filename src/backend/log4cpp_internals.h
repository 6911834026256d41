// SPDX-License-Identifier: MIT
// Everything that relies on log4cpp's internals. Check this folder against each new version of
// log4cpp: the build fails with any version but the one that was checked last.
//
//   lets_exceptions_pass.h   removes noexcept from log4cpp's functions
//   LogFinishedLine          writes to a const member of log4cpp's event
//   ApplyProperties          uses a header that log4cpp doesn't install
//   ForgetCategories         empties a protected map of log4cpp's
#ifndef VEXTREL_BACKEND_LOG4CPP_INTERNALS_H
#define VEXTREL_BACKEND_LOG4CPP_INTERNALS_H

#include <istream>
#include <log4cpp/Category.hh>
#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/NDC.hh>
#include <log4cpp/Priority.hh>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace vextrel::backend {

static_assert(std::string_view(VEXTREL_LOG4CPP_VERSION) == "1.1.4",
              "Check src/backend against this version of log4cpp, then change the number here.");

// Passes `line` to the appenders of `logger` without copying it. Otherwise does what Category::log
// does if the priority is enabled (Category.cpp, _logUnconditionally2).
//
// REQUIRES: `priority` is enabled in `logger`.
// Thread-safe: log4cpp locks each category while it appends. Exceptions from appenders propagate.
inline void LogFinishedLine(log4cpp::Category& logger, log4cpp::Priority::Value priority,
                            std::string&& line) {
  log4cpp::LoggingEvent event(logger.getName(), std::string(), log4cpp::NDC::get(), priority);
  // LoggingEvent::message is const and its constructor copies. Since C++20 a const member may be
  // replaced by a new object as long as the complete object isn't const ([basic.life]/8).
  std::destroy_at(&event.message);
  std::construct_at(const_cast<std::string*>(&event.message), std::move(line));
  logger.callAppenders(event);
}

// Configures log4cpp from the text of a property file. The public PropertyConfigurator takes only a
// file name; PropertyConfiguratorImpl.hh is in log4cpp's src folder.
//
// Throws log4cpp::ConfigureFailure if log4cpp rejects the text. Not thread-safe.
void ApplyProperties(std::istream& properties);

// Keeps the categories alive beyond log4cpp's static objects: HierarchyMaintainer's destructor
// deletes only the categories in its protected _categoryMap.
//
// Not thread-safe. Afterward, no category can be found by name.
void ForgetCategories();

}  // namespace vextrel::backend

#endif  // VEXTREL_BACKEND_LOG4CPP_INTERNALS_H
