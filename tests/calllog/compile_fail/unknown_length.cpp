#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%llu", 1U));
}
