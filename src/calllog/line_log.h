// Writing formatted lines to a log4cpp category.
//
// A line is formatted only when the category's effective priority lets it through, and handed to
// log4cpp as finished text, never as a format. Thread-safe as far as log4cpp is, which locks its
// own structures: each line arrives whole. Allocation failures leave as exceptions.
#ifndef VEXTREL_CALLLOG_LINE_LOG_H
#define VEXTREL_CALLLOG_LINE_LOG_H

#include <array>
#include <log4cpp/Category.hh>
#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/NDC.hh>
#include <log4cpp/Priority.hh>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "calllog/always_inline.h"
#include "calllog/line_format.h"
#include "calllog/line_writer.h"
#include "calllog/port_rendering.h"

namespace vextrel {

namespace detail {

// For a line that may pass: what Category::info does, which would ask for the priority once more,
// and copy the line.
inline void LogPassedInfo(log4cpp::Category& logger, std::string&& line) {
  log4cpp::LoggingEvent event(logger.getName(), std::string(), log4cpp::NDC::get(),
                              log4cpp::Priority::INFO);
  // A const member may be replaced by another object, as long as what it belongs to is not const.
  std::destroy_at(&event.message);
  std::construct_at(const_cast<std::string*>(&event.message), std::move(line));
  logger.callAppenders(event);
}

// What was going to be rendered in the line: whether a line is written must not change which memory
// is read.
inline void RenderUnlogged(const ByteDump& dump) {
  std::array<char, ShortLineWriter::kSize> text;  // NOLINT: nobody reads it
  if (dump.size() <= text.size()) {
    dump.Write(text.data());
  } else {
    static_cast<void>(RenderByteDump(dump.pBuffer, dump.iSize));
  }
}
template <typename Value>
void RenderUnlogged(const Value& /*rendered*/) noexcept {}

}  // namespace detail

template <typename... Values>
void LogInfo(log4cpp::Category& logger, LineFormat<std::type_identity_t<Values>...> format,
             const Values&... values) {
  if (logger.isInfoEnabled()) {
    logger.info(FormatLine<Values...>(format, values...));
  }
}

// The line of a call: a format written as "..."_line is part of the code, which is fast. Every call
// pays for it, and renders its values even if no line is written.
template <FormatText text, typename... Values>
VEXTREL_ALWAYS_INLINE void LogInfo(log4cpp::Category& logger, KnownFormat<text> format,
                                   const Values&... values) {
  if (logger.isInfoEnabled()) {
    detail::LogPassedInfo(logger, FormatLine(format, values...));
  } else {
    (detail::RenderUnlogged(values), ...);
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
