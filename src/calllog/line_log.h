// SPDX-License-Identifier: MIT
// Writing lines to a log4cpp category.
//
// A line is formatted only if the category's effective priority lets it through, and log4cpp gets
// it as finished text, never as a format. Thread-safe, and each line arrives whole, because log4cpp
// locks its own structures. Failed allocations and exceptions from appenders propagate.
#ifndef VEXTREL_CALLLOG_LINE_LOG_H
#define VEXTREL_CALLLOG_LINE_LOG_H

#include <array>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>

#include "backend/log4cpp_internals.h"
#include "calllog/always_inline.h"
#include "calllog/byte_dump.h"
#include "calllog/line_format.h"
#include "calllog/line_writer.h"

namespace vextrel {

namespace detail {

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

// Writes the line of a call, at INFO. Even if no line is written, dumps are rendered, because the
// priority mustn't decide whether the memory that a call describes is read (Kept: 43). A ValueAt is
// read only if the line is written. Inlined for each format, because every traced call pays for it.
template <FormatText text, typename... Values>
VEXTREL_ALWAYS_INLINE void LogCall(log4cpp::Category& logger, KnownFormat<text> format,
                                   const Values&... values) {
  if (logger.isInfoEnabled()) {
    backend::LogFinishedLine(logger, log4cpp::Priority::INFO, FormatLine(format, values...));
  } else {
    (detail::RenderUnlogged(values), ...);
  }
}

// Write a report about Vextrel itself or about misuse. Rarely called, so small rather than fast.
template <FormatText text, typename... Values>
void ReportInfo(log4cpp::Category& logger, KnownFormat<text> /*format*/, const Values&... values) {
  if (logger.isInfoEnabled()) {
    logger.info(
        FormatLine<Values...>(KnownFormat<text>::template kCheckedFor<Values...>, values...));
  }
}

template <FormatText text, typename... Values>
void ReportWarn(log4cpp::Category& logger, KnownFormat<text> /*format*/, const Values&... values) {
  if (logger.isWarnEnabled()) {
    logger.warn(
        FormatLine<Values...>(KnownFormat<text>::template kCheckedFor<Values...>, values...));
  }
}

template <FormatText text, typename... Values>
void ReportError(log4cpp::Category& logger, KnownFormat<text> /*format*/, const Values&... values) {
  if (logger.isErrorEnabled()) {
    logger.error(
        FormatLine<Values...>(KnownFormat<text>::template kCheckedFor<Values...>, values...));
  }
}

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_LINE_LOG_H
