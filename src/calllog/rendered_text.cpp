// SPDX-License-Identifier: MIT
#include "calllog/rendered_text.h"

#include <cstring>

namespace vextrel {
namespace {

std::size_t LengthOf(std::initializer_list<std::string_view> parts) noexcept {
  std::size_t length = 0;
  for (const std::string_view part : parts) {
    length += part.size();
  }
  return length;
}

}  // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing inline_ would cost every call.
RenderedText::RenderedText(std::size_t length)
    : size_(length + 1), shownSize_(length), isAllocated_(size_ > kInlineSize) {
  char* text = isAllocated_ ? new char[size_] : inline_.data();
  text[length] = '\0';
  text_ = text;
}

RenderedText::RenderedText(std::initializer_list<std::string_view> parts)
    : RenderedText(LengthOf(parts)) {
  char* end = MutableText();
  for (const std::string_view part : parts) {
    if (!part.empty()) {
      std::memcpy(end, part.data(), part.size());
      end += part.size();
    }
  }
  shownSize_ = std::strlen(text_);
}

}  // namespace vextrel
