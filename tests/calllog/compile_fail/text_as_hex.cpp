#include <string>

#include "calllog/line_format.h"

void Write(const std::string& text) {
  static_cast<void>(vextrel::FormatLine("0x%x", text));
}
