// SPDX-License-Identifier: MIT
#include "exports/exports_fixture.h"

#include <algorithm>
#include <iterator>

namespace vextrel_test {
namespace {

// Digits that a line may show in place of a marker.
struct Marker {
  std::string_view text;
  std::string_view digits;
  std::size_t minSize;
  std::size_t maxSize;
};
constexpr Marker kMarkers[] = {
    {"<address>", "0123456789ABCDEF", 16, 16},
    {"<hex>", "0123456789abcdef", 1, 16},
    {"<decimal>", "0123456789", 1, 10},
};

// The marker that `expected` begins with, or null.
const Marker* FindMarker(std::string_view expected) {
  const auto* found = std::ranges::find_if(
      kMarkers, [&](const Marker& marker) { return expected.starts_with(marker.text); });
  return found != std::end(kMarkers) ? found : nullptr;
}

}  // namespace

std::string FillFirst(std::string_view text, std::string_view value) {
  const std::size_t at = text.find("{}");
  if (at == std::string_view::npos) {
    return "(more values than places) " + std::string(text);
  }
  return std::string(text.substr(0, at)).append(value).append(text.substr(at + 2));
}

bool LineMatches(const std::string& line, const std::string& expected) {
  std::string_view rest = line;
  std::string_view wanted = expected;
  while (!wanted.empty()) {
    const Marker* marker = FindMarker(wanted);
    if (marker == nullptr) {
      if (!rest.starts_with(wanted.front())) {
        return false;
      }
      rest.remove_prefix(1);
      wanted.remove_prefix(1);
      continue;
    }
    const std::size_t size = std::min(rest.find_first_not_of(marker->digits), rest.size());
    const std::string_view digits = rest.substr(0, size);
    if (size < marker->minSize || size > marker->maxSize ||
        digits.find_first_not_of('0') == std::string_view::npos) {
      return false;
    }
    rest.remove_prefix(size);
    wanted.remove_prefix(marker->text.size());
  }
  return rest.empty();
}

void InfoQuery::AnswerText(std::string_view text) {
  type = 1;  // INFO_DATATYPE_STRING
  buffer.fill('\0');
  std::ranges::copy(text, buffer.begin());
  size = text.size() + 1;
}

void InfoQuery::AnswerSize(INFO_DATATYPE answeredType, std::size_t answeredSize) {
  type = answeredType;
  size = answeredSize;
}

}  // namespace vextrel_test
