#include "calllog/rendered_text.h"

#include <algorithm>

namespace vextrel {

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing inline_ would cost every call.
RenderedText::RenderedText(std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts) {
    size_ += part.size();
  }
  if (size_ > kInlineSize) {
    allocated_ = std::make_unique_for_overwrite<char[]>(size_);
  }
  char* end = allocated_ != nullptr ? allocated_.get() : inline_.data();
  for (const std::string_view part : parts) {
    end = std::copy(part.begin(), part.end(), end);
  }
  *end = '\0';
}

}  // namespace vextrel
