#include "calllog/line_format.h"

void Write() {
  static_cast<void>(vextrel::FormatLine("%i", 1));
}
