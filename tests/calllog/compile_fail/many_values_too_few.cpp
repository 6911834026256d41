#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%u, %u, %u, %u, %u", 1U));
}
