// SPDX-License-Identifier: MIT
#include <array>
#include <utility>

#include "page/page_json.h"

namespace vextrel::program {
namespace {

std::string TextOf(const PageJson& data) {
  // Nothing but ASCII, so the line separators that older scripts trip over are escaped, too.
  return WithoutMarkup(data.dump(-1, ' ', true, PageJson::error_handler_t::replace));
}

// Where, and what it is for people. What is needed least comes first.
constexpr std::array<std::pair<const char*, const char*>, 6> kParts = {{
    {"/handles/all", "handles"},
    {"/rows", "the lines around findings"},
    {"/sessions", "sessions"},
    {"/failures", "calls that failed"},
    {"/neverReturned", "calls that never returned"},
    {"/findings/all", "findings"},
}};

}  // namespace

std::string WithoutMarkup(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  for (const char each : json) {
    switch (each) {
      case '<':
        out += "\\u003c";
        break;
      case '>':
        out += "\\u003e";
        break;
      case '&':
        out += "\\u0026";
        break;
      default:
        out += each;
    }
  }
  return out;
}

std::string FitData(PageJson data, std::size_t room) {
  data["leftOut"] = PageJson::array();
  std::string text = TextOf(data);
  for (const auto& [place, name] : kParts) {
    const PageJson::json_pointer part(place);
    if (text.size() <= room) {
      break;
    }
    if (data.contains(part) && data[part].is_array()) {
      data[part].clear();
      data["leftOut"].push_back(name);
      text = TextOf(data);
    }
  }
  return text;
}

}  // namespace vextrel::program
