#include "calllog/line_format.h"

void Write(const char* text) {
  static_cast<void>(vextrel::FormatLine("%u", text));
}
