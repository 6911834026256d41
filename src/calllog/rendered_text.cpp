#include "calllog/rendered_text.h"

#include <cstring>

namespace vextrel {

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing inline_ would cost every call.
RenderedText::RenderedText(std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts) {
    size_ += part.size();
  }
  isAllocated_ = size_ > kInlineSize;
  char* end = isAllocated_ ? new char[size_] : inline_.data();
  text_ = end;
  for (const std::string_view part : parts) {
    if (!part.empty()) {
      std::memcpy(end, part.data(), part.size());
      end += part.size();
    }
  }
  *end = '\0';
  shownSize_ = std::strlen(text_);
}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing inline_ would cost every call.
RenderedText::RenderedText(const Digits& digits) noexcept {
  static_assert(Digits::kRoom < kInlineSize);
  // Its whole room, which is one size for all, is cheaper to copy than as much as is used.
  std::memcpy(inline_.data(), digits.view().data(), Digits::kRoom);
  shownSize_ = digits.view().size();
  size_ = shownSize_ + 1;
  inline_[shownSize_] = '\0';
  text_ = inline_.data();
}

}  // namespace vextrel
