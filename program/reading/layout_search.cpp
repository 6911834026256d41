// SPDX-License-Identifier: MIT
#include "reading/layout_search.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "reading/message.h"

namespace vextrel::program {
namespace {

// Lines to look at, after the first one that fits any layout.
constexpr int kLines = 200;

std::vector<Layout> Candidates() {
  std::vector<Layout> layouts;
  for (const std::string_view pattern :
       {"%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n", "%d{%H:%M:%S.%l} %-5p %m%n", "%r [%t] %p %m%n",
        "%R %p %c %x: %m%n", "%p - %m%n", "%r [%t] %p %c %x - %m%n", "%d [%t] %-5p %m%n",
        "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %c %m%n", "%d [%t] %-5p %c - %m%n",
        "%d [%t] %-5p %c %x - %m%n", "%d{%H:%M:%S.%l} [%t] %-5p %m%n",
        "%d{%Y-%m-%d %H:%M:%S.%l} %-5p %m%n", "%d %p %c %x: %m%n", "%d %-5p %m%n", "%d %m%n",
        "%p %m%n"}) {
    layouts.push_back(Layout::OfPattern(pattern));
  }
  layouts.push_back(Layout::Simple());
  layouts.push_back(Layout::OfPattern("%m%n"));
  return layouts;
}

// A message with another one glued to its end has no line breaks between messages.
bool IsGlued(std::string_view line) {
  Message message;
  ParseMessage(line, message);
  if (message.kind != MessageKind::Other) {
    return false;
  }
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (StartsMessage(line.substr(i))) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::optional<Layout> FindLayout(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) {
    text.remove_prefix(3);
  }
  std::vector<Layout> layouts = Candidates();
  std::vector<int> hits(layouts.size());
  const std::string_view whole = text;
  int lines = 0;
  while (!text.empty() && lines < kLines) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    bool any = false;
    for (std::size_t i = 0; i < layouts.size(); ++i) {
      RecordHead head;
      if (layouts[i].Match(text, head) && head.messageBegin < end &&
          StartsMessage(text.substr(head.messageBegin))) {
        ++hits[i];
        any = true;
      }
    }
    lines += any || lines > 0 ? 1 : 0;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  std::size_t best = 0;
  for (std::size_t i = 1; i < layouts.size(); ++i) {
    best = hits[i] > hits[best] ? i : best;
  }
  if (hits[best] == 0) {
    return std::nullopt;
  }
  if (layouts[best].IsBare()) {
    constexpr std::size_t enough = 1 << 16;
    const std::string_view start = whole.substr(0, enough);
    if (IsGlued(start.substr(0, start.find('\n')))) {
      return Layout::PassThrough();
    }
  }
  return std::move(layouts[best]);
}

}  // namespace vextrel::program
