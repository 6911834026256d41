// Writing formatted lines to a log4cpp category.
//
// A line is formatted only when the category's effective priority lets it through, and handed to
// log4cpp as finished text, never as a format. Thread-safe as far as log4cpp is, which locks its
// own structures: each line arrives whole. Allocation failures leave as exceptions.
#ifndef VEXTREL_CALLLOG_LINE_LOG_H
#define VEXTREL_CALLLOG_LINE_LOG_H

#include <log4cpp/Category.hh>
#include <type_traits>

#include "calllog/line_format.h"

namespace vextrel {

template <typename... Values>
void LogInfo(log4cpp::Category& logger, LineFormat<std::type_identity_t<Values>...> format,
             const Values&... values) {
  if (logger.isInfoEnabled()) {
    logger.info(FormatLine<Values...>(format, values...));
  }
}

template <typename... Values>
void LogWarn(log4cpp::Category& logger, LineFormat<std::type_identity_t<Values>...> format,
             const Values&... values) {
  if (logger.isWarnEnabled()) {
    logger.warn(FormatLine<Values...>(format, values...));
  }
}

template <typename... Values>
void LogError(log4cpp::Category& logger, LineFormat<std::type_identity_t<Values>...> format,
              const Values&... values) {
  if (logger.isErrorEnabled()) {
    logger.error(FormatLine<Values...>(format, values...));
  }
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_LOG_H
