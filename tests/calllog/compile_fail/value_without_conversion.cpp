#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("nothing to fill", 1U));
}
