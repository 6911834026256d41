#include "gentl_functions.h"

#include <array>

#include "text.h"

namespace grab {

std::string GenTl::Describe(std::string_view function, GC_ERROR result) const {
  std::string description = std::string(function) + " failed with " + ErrorText(result);
  std::array<char, 1024> reason{};
  std::size_t size = reason.size();
  GC_ERROR lastError = GC_ERR_SUCCESS;
  if (GCGetLastError(&lastError, reason.data(), &size) != GC_ERR_SUCCESS || lastError != result) {
    return description;
  }
  reason.back() = '\0';
  std::string_view text = reason.data();
  while (!text.empty() && (text.back() == '.' || text.back() == '\n')) {
    text.remove_suffix(1);
  }
  return text.empty() ? description : description + ": " + std::string(text);
}

}  // namespace grab
