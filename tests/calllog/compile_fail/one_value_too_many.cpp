#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%u", 1U, 2U));
}
