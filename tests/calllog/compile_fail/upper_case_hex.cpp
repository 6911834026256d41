#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%X", 1U));
}
