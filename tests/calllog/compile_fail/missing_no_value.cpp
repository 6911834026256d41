#include "calllog/line_format.h"

void Write(const void* address, unsigned number) {
  static_cast<void>(vextrel::FormatLine("0x%p->(Buffer=%s), 0x%p->(iSize=%u)", address,
                                        vextrel::Misplaced(number), vextrel::noValue));
}
