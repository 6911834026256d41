#include "calllog/line_format.h"

void Write(const vextrel::RenderedText& result, const vextrel::RenderedText& type,
           const unsigned* size) {
  static_cast<void>(
      vextrel::FormatLine("%s=Call(0x%p->(iType=%s), iSize=%u)", result, type, size, 1U));
}
