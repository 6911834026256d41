#include "calllog/line_format.h"

void Write(const void* address) {
  static_cast<void>(vextrel::FormatLine("%s", address));
}
