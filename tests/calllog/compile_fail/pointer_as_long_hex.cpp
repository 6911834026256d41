#include "calllog/line_format.h"

void Write(void* address) {
  static_cast<void>(vextrel::FormatLine("0x%llx", address));
}
