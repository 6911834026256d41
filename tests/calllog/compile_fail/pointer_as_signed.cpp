#include "calllog/line_format.h"

void Write(int* address) {
  static_cast<void>(vextrel::FormatLine("%d", address));
}
