#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%08x", 1U));
}
