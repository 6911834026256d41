#include <cstdint>
#include <string>

#include "calllog/line_format.h"
#include "calllog/line_log.h"

// Shows that it is the formats that the compiler refuses in the other sources.
void Write(log4cpp::Category& logger, const void* address, const char* text,
           const std::string& string, const vextrel::RenderedText& rendered, std::uint64_t number) {
  using vextrel::Misplaced;
  using vextrel::noValue;
  static_cast<void>(vextrel::FormatLine("nothing to fill"));
  static_cast<void>(vextrel::FormatLine("%s%s%s", text, string, rendered));
  static_cast<void>(vextrel::FormatLine("%p%p", address, text));
  static_cast<void>(vextrel::FormatLine("%u%lu%d%x%llx", number, number, number, number, number));
  static_cast<void>(vextrel::FormatLine("%s%s%u%p", Misplaced(number), Misplaced(address),
                                        Misplaced(rendered), Misplaced(string)));
  static_cast<void>(vextrel::FormatLine("0x%p->(Buffer=%s), 0x%p->(iSize=%u)", address,
                                        Misplaced(number), noValue, noValue));
  vextrel::LogInfo(logger, "%s=Call(%u)", rendered, number);
  vextrel::LogWarn(logger, "%s", string);
  vextrel::LogError(logger, "0x%p", address);
}
