// SPDX-License-Identifier: MIT
#include "harmless_config.h"

#include <Properties.hh>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <ctime>
#include <sstream>
#include <string_view>

namespace vextrel_fuzz {
namespace {

bool IsHarmfulType(std::string_view value) {
  constexpr std::array<std::string_view, 3> harmful = {"AbortAppender", "SyslogAppender",
                                                       "LocalSyslogAppender"};
  // log4cpp takes what follows the last dot for the type.
  const std::string_view type = value.substr(value.rfind('.') + 1);
  return std::find(harmful.begin(), harmful.end(), type) != harmful.end();
}

bool HasLongNumber(std::string_view value, std::size_t most) {
  std::size_t digits = 0;
  for (const char letter : value) {
    digits = std::isdigit(static_cast<unsigned char>(letter)) != 0 ? digits + 1 : 0;
    if (digits > most) {
      return true;
    }
  }
  return false;
}

// log4cpp has room for 99 characters. The limit here is lower: names of months and days vary in
// length.
bool IsLongDate(std::string format) {
  if (format.empty()) {
    return false;
  }
  // log4cpp puts the milliseconds in first, wherever these two characters stand.
  const std::size_t milliseconds = format.find("%l");
  if (milliseconds != std::string::npos) {
    format.replace(milliseconds, 2, "999");
  }
  std::array<char, 80> text{};
  const std::time_t now = std::time(nullptr);
  std::tm date{};
  ::localtime_r(&now, &date);
  return std::strftime(text.data(), text.size(), format.c_str(), &date) == 0;
}

bool HasLongDate(std::string_view pattern) {
  for (std::size_t open = pattern.find('{'); open != std::string_view::npos;
       open = pattern.find('{', open + 1)) {
    const std::string_view rest = pattern.substr(open + 1);
    if (IsLongDate(std::string(rest.substr(0, rest.find('}'))))) {
      return true;
    }
  }
  return false;
}

std::size_t CountOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

}  // namespace

bool IsHarmless(const std::string& text) {
  if (CountOf(text, "${") > 8) {
    return false;
  }
  // log4cpp's own parser says what it will see; the set-up adds a line end.
  std::istringstream lines(text + "\n");
  log4cpp::Properties properties;
  properties.load(lines);
  return std::none_of(properties.begin(), properties.end(), [](const auto& property) {
    const auto& [key, value] = property;
    return IsHarmfulType(value) || CountOf(key, ".") > 500 ||
           (key.ends_with(".fileName") && value.find('/') != std::string::npos) ||
           (key.ends_with(".maxBackupIndex") && HasLongNumber(value, 2)) ||
           (key.ends_with(".ConversionPattern") && (HasLongNumber(value, 3) || HasLongDate(value)));
  });
}

}  // namespace vextrel_fuzz
