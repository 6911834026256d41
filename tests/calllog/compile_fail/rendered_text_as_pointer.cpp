#include "calllog/line_format.h"

void Write(const vextrel::RenderedText& text) {
  static_cast<void>(vextrel::FormatLine("0x%p", text));
}
