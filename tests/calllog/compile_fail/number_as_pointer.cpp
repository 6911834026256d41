#include "calllog/line_format.h"

void Write(unsigned long long number) {
  static_cast<void>(vextrel::FormatLine("0x%p", number));
}
