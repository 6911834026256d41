// SPDX-License-Identifier: MIT
#include "reading/layout.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace vextrel::program {
namespace {

constexpr std::array<std::string_view, 10> kPriorities = {
    "FATAL", "ALERT", "CRIT", "ERROR", "WARN", "NOTICE", "INFO", "DEBUG", "NOTSET", "UNKNOWN"};
constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::int64_t kMillisecond = 1'000;
constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kDay = std::int64_t{24} * 60 * kMinute;
// A field of a layout that may hold any text, a thread's name for example, is no longer than this.
constexpr std::size_t kMaxField = 128;

struct DateFields {
  std::int64_t year = 1970;
  std::int64_t month = 1;
  std::int64_t day = 1;
  std::int64_t hour = 0;
  std::int64_t minute = 0;
  std::int64_t second = 0;
  std::int64_t millisecond = 0;
  bool afternoon = false;
  bool halfDays = false;
};

// Days since 1970-01-01 in the Gregorian calendar.
std::int64_t DaysSince1970(std::int64_t year, std::int64_t month, std::int64_t day) noexcept {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146'097 + dayOfEra - 719'468;
}

std::int64_t TimeOf(const DateFields& fields) noexcept {
  std::int64_t hour = fields.hour;
  if (fields.halfDays) {
    hour = hour % 12 + (fields.afternoon ? 12 : 0);
  }
  return DaysSince1970(fields.year, fields.month, fields.day) * kDay +
         (hour * 60 + fields.minute) * kMinute + fields.second * kSecond +
         fields.millisecond * kMillisecond;
}

bool IsDigit(char each) noexcept {
  return each >= '0' && each <= '9';
}

bool IsDateLetter(char each) noexcept {
  return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') || each == '+' ||
         each == '-' || IsDigit(each);
}

// Exactly `digits` digits, or up to that many behind blanks.
bool TakeDigits(std::string_view text, std::size_t& at, std::size_t digits, std::int64_t& number) {
  if (text.size() - at < digits) {
    return false;
  }
  std::int64_t value = 0;
  std::size_t i = 0;
  while (i + 1 < digits && text[at + i] == ' ') {
    ++i;
  }
  for (; i < digits; ++i) {
    if (!IsDigit(text[at + i])) {
      return false;
    }
    value = value * 10 + (text[at + i] - '0');
  }
  at += digits;
  number = value;
  return true;
}

bool TakeLiteral(std::string_view text, std::size_t& at, std::string_view literal) {
  if (text.size() - at < literal.size()) {
    return false;
  }
  // A call of memcmp costs more than the few characters of a layout's literals.
  for (std::size_t i = 0; i < literal.size(); ++i) {
    if (text[at + i] != literal[i]) {
      return false;
    }
  }
  at += literal.size();
  return true;
}

bool TakeMonth(std::string_view text, std::size_t& at, std::int64_t& month) {
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (TakeLiteral(text, at, kMonths[i])) {
      month = static_cast<std::int64_t>(i) + 1;
      return true;
    }
  }
  return false;
}

bool TakeWord(std::string_view text, std::size_t& at) {
  const std::size_t begin = at;
  while (at < text.size() && IsDateLetter(text[at])) {
    ++at;
  }
  return at > begin;
}

// Puts the conversions that stand for several in their places.
std::string Expand(std::string_view format) {
  if (format.empty() || format == "ISO8601") {
    format = "%Y-%m-%d %H:%M:%S,%l";
  } else if (format == "ABSOLUTE") {
    format = "%H:%M:%S,%l";
  } else if (format == "DATE") {
    format = "%d %b %Y %H:%M:%S,%l";
  }
  std::string expanded;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const std::string_view two = format.substr(i, 2);
    if (two == "%F") {
      expanded += "%Y-%m-%d";
    } else if (two == "%T") {
      expanded += "%H:%M:%S";
    } else if (two == "%R") {
      expanded += "%H:%M";
    } else if (two == "%D") {
      expanded += "%m/%d/%y";
    } else {
      expanded += format[i];
      if (format[i] != '%' || i + 1 == format.size()) {
        continue;
      }
      expanded += format[i + 1];
    }
    ++i;
  }
  return expanded;
}

}  // namespace

std::string_view PriorityName(Priority priority) noexcept {
  return kPriorities[static_cast<std::size_t>(priority)];
}

Layout Layout::OfPattern(std::string_view pattern) {
  Layout layout;
  layout.name_ = pattern;
  bool behindMessage = false;
  bool ended = false;
  std::string literal;
  const auto flush = [&] {
    if (!literal.empty()) {
      Part part;
      part.text = std::exchange(literal, {});
      (behindMessage ? layout.tail_ : layout.front_).push_back(part);
    }
  };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (ended) {
      throw std::invalid_argument("'%n' has to be the end of the pattern");
    }
    if (pattern[i] != '%') {
      literal += pattern[i];
      continue;
    }
    Part part;
    int width = 0;
    std::size_t at = i + 1;
    const char* end = pattern.data() + pattern.size();
    at = static_cast<std::size_t>(std::from_chars(pattern.data() + at, end, width).ptr -
                                  pattern.data());
    if (at < pattern.size() && pattern[at] == '.') {
      at = static_cast<std::size_t>(
          std::from_chars(pattern.data() + at + 1, end, part.maxWidth).ptr - pattern.data());
    }
    if (at >= pattern.size()) {
      throw std::invalid_argument("the pattern ends in the middle of a conversion");
    }
    part.alignLeft = width < 0;
    part.minWidth = static_cast<std::size_t>(width < 0 ? -width : width);
    const char conversion = pattern[at];
    std::string_view postfix;
    if (at + 1 < pattern.size() && pattern[at + 1] == '{') {
      const std::size_t close = pattern.find('}', at);
      if (close == std::string_view::npos) {
        throw std::invalid_argument("a '{' in the pattern has no '}'");
      }
      postfix = pattern.substr(at + 2, close - at - 2);
      at = close;
    }
    i = at;
    if (conversion == '%') {
      literal += '%';
    } else if (conversion == 'n') {
      ended = true;
    } else if (conversion == 'm') {
      if (behindMessage) {
        throw std::invalid_argument("the pattern has more than one '%m'");
      }
      flush();
      behindMessage = true;
    } else {
      flush();
      layout.AddConversion(conversion, part, postfix, behindMessage);
    }
  }
  flush();
  if (!behindMessage) {
    throw std::invalid_argument("the pattern has no '%m', so its log has no calls");
  }
  if (!ended) {
    if (layout.front_.empty() && layout.tail_.empty()) {
      return PassThrough();
    }
    throw std::invalid_argument("the pattern doesn't end in '%n'");
  }
  if (!layout.tail_.empty() && layout.tail_[0].field != Field::Literal) {
    throw std::invalid_argument("nothing tells the end of '%m' in the pattern");
  }
  return layout;
}

Layout Layout::Simple() {
  Layout layout = OfPattern("%-8p: %m%n");
  layout.name_ = "SimpleLayout";
  return layout;
}

Layout Layout::PassThrough() {
  Layout layout;
  layout.name_ = "PassThroughLayout";
  layout.isGlued_ = true;
  return layout;
}

void Layout::AddConversion(char conversion, Part part, std::string_view postfix,
                           bool behindMessage) {
  switch (conversion) {
    case 'd':
      AddDate(part, postfix);
      break;
    case 'p':
      part.field = Field::Priority;
      break;
    case 't':
      part.field = Field::Thread;
      showsThread_ = true;
      break;
    case 'c':
      part.field = Field::Category;
      break;
    case 'x':
      part.field = Field::Text;
      break;
    case 'u':
      part.field = Field::Number;
      break;
    case 'r':
    case 'R':
      part.field = conversion == 'r' ? Field::Milliseconds : Field::Seconds;
      if (time_ == TimeKind::None) {
        time_ = conversion == 'r' ? TimeKind::SinceStart : TimeKind::Date;
        resolution_ = conversion == 'r' ? kMillisecond : kSecond;
      }
      break;
    default:
      throw std::invalid_argument(std::string("'%") + conversion +
                                  "' is no conversion of a PatternLayout");
  }
  (behindMessage ? tail_ : front_).push_back(std::move(part));
}

void Layout::AddDate(Part& part, std::string_view format) {
  const std::string expanded = Expand(format);
  Date date;
  bool hasDay = false;
  bool isFixed = true;
  std::size_t size = 0;
  std::int64_t resolution = kDay;
  for (std::size_t i = 0; i < expanded.size(); ++i) {
    if (expanded[i] != '%' || i + 1 == expanded.size()) {
      if (date.steps.empty() || date.steps.back().first != '\0') {
        date.steps.emplace_back('\0', "");
      }
      date.steps.back().second += expanded[i];
      ++size;
      continue;
    }
    const char conversion = expanded[++i];
    date.steps.emplace_back(conversion, "");
    switch (conversion) {
      case 'Y':
        hasDay = true;
        size += 4;
        break;
      case 'l':
        date.millisecondsAt = size;
        resolution = kMillisecond;
        size += 3;
        break;
      case 'S':
        date.secondsAt = size;
        resolution = std::min(resolution, kSecond);
        size += 2;
        break;
      case 'y':
      case 'm':
      case 'd':
      case 'H':
      case 'M':
        size += 2;
        break;
      case 'e':
      case 'I':
      case 'p':
      case 'b':
      case 'h':
      case 'a':
      case 'A':
      case 'z':
      case 'Z':
        isFixed = false;
        break;
      default:
        throw std::invalid_argument(std::string("'%") + conversion +
                                    "' in the pattern's date isn't known here");
    }
  }
  if (isFixed && date.secondsAt != 0 &&
      (date.millisecondsAt == 0 || date.millisecondsAt > date.secondsAt)) {
    date.fixedSize = size;
  }
  part.field = Field::Date;
  part.date = dates_.size();
  dates_.push_back(std::move(date));
  if (time_ == TimeKind::None || resolution < resolution_) {
    time_ = hasDay ? TimeKind::Date : TimeKind::TimeOfDay;
    resolution_ = resolution;
  }
}

bool Layout::MatchDateSteps(const Date& date, std::string_view text, std::size_t& at,
                            std::int64_t& time) {
  DateFields fields;
  std::int64_t number = 0;
  for (const auto& [conversion, literal] : date.steps) {
    bool taken = true;
    switch (conversion) {
      case '\0':
        taken = TakeLiteral(text, at, literal);
        break;
      case 'Y':
        taken = TakeDigits(text, at, 4, fields.year);
        break;
      case 'y':
        taken = TakeDigits(text, at, 2, number);
        fields.year = number + (number < 69 ? 2000 : 1900);
        break;
      case 'm':
        taken = TakeDigits(text, at, 2, fields.month);
        break;
      case 'd':
      case 'e':
        taken = TakeDigits(text, at, 2, fields.day);
        break;
      case 'H':
        taken = TakeDigits(text, at, 2, fields.hour);
        break;
      case 'I':
        taken = TakeDigits(text, at, 2, fields.hour);
        fields.halfDays = true;
        break;
      case 'M':
        taken = TakeDigits(text, at, 2, fields.minute);
        break;
      case 'S':
        taken = TakeDigits(text, at, 2, fields.second);
        break;
      case 'l':
        taken = TakeDigits(text, at, 3, fields.millisecond);
        break;
      case 'p':
        fields.afternoon = text.substr(at).starts_with("PM");
        taken = TakeWord(text, at);
        break;
      case 'b':
      case 'h':
        taken = TakeMonth(text, at, fields.month);
        break;
      default:
        taken = TakeWord(text, at);
    }
    if (!taken) {
      return false;
    }
  }
  if (fields.month < 1 || fields.month > 12 || fields.day < 1 || fields.day > 31 ||
      fields.hour > 23 || fields.minute > 59 || fields.second > 60) {
    return false;
  }
  time = TimeOf(fields);
  return true;
}

bool Layout::MatchDate(Date& date, std::string_view text, std::size_t& at,
                       std::int64_t& time) const {
  if (date.fixedSize == 0) {
    return MatchDateSteps(date, text, at, time);
  }
  if (text.size() - at < date.fixedSize) {
    return false;
  }
  const std::string_view shown = text.substr(at, date.fixedSize);
  const std::size_t same = date.secondsAt;
  if (date.lastText.size() == date.fixedSize &&
      std::memcmp(shown.data(), date.lastText.data(), same) == 0) {
    // Only the seconds and milliseconds are new. Between and behind them stand literals.
    std::int64_t second = 0;
    std::int64_t millisecond = 0;
    std::size_t next = same;
    bool fits = TakeDigits(shown, next, 2, second);
    if (date.millisecondsAt != 0) {
      const std::size_t gap = date.millisecondsAt - next;
      fits = fits && std::memcmp(shown.data() + next, date.lastText.data() + next, gap) == 0;
      next += gap;
      fits = fits && TakeDigits(shown, next, 3, millisecond);
    }
    fits = fits && std::memcmp(shown.data() + next, date.lastText.data() + next,
                               date.fixedSize - next) == 0;
    if (fits && second <= 60) {
      time = date.lastMinute + second * kSecond + millisecond * kMillisecond;
      at += date.fixedSize;
      return true;
    }
    return false;
  }
  std::size_t next = at;
  if (!MatchDateSteps(date, text, next, time) || next - at != date.fixedSize) {
    return false;
  }
  date.lastText = shown;
  std::int64_t second = 0;
  std::int64_t millisecond = 0;
  std::size_t field = date.secondsAt;
  static_cast<void>(TakeDigits(shown, field, 2, second));
  if (date.millisecondsAt != 0) {
    field = date.millisecondsAt;
    static_cast<void>(TakeDigits(shown, field, 3, millisecond));
  }
  date.lastMinute = time - second * kSecond - millisecond * kMillisecond;
  at = next;
  return true;
}

bool Layout::MatchPart(const std::vector<Part>& parts, std::size_t index, std::string_view text,
                       std::size_t& at, RecordHead& head) {
  const Part& part = parts[index];
  if (part.field == Field::Literal) {
    return TakeLiteral(text, at, part.text);
  }
  const std::size_t begin = at;
  if (part.minWidth != 0 && !part.alignLeft) {
    while (at < text.size() && at - begin < part.minWidth && text[at] == ' ') {
      ++at;
    }
  }
  const std::size_t valueBegin = at;
  std::int64_t number = 0;
  switch (part.field) {
    case Field::Date:
      if (!MatchDate(dates_[part.date], text, at, head.time)) {
        return false;
      }
      break;
    case Field::Priority: {
      std::size_t found = kPriorities.size();
      for (std::size_t i = 0; i < kPriorities.size() && found == kPriorities.size(); ++i) {
        const std::string_view name =
            kPriorities[i].substr(0, part.maxWidth == 0 ? std::string_view::npos : part.maxWidth);
        if (TakeLiteral(text, at, name)) {
          found = i;
        }
      }
      if (found == kPriorities.size()) {
        return false;
      }
      head.priority = static_cast<Priority>(found);
      break;
    }
    case Field::Milliseconds:
    case Field::Seconds:
    case Field::Number: {
      const auto [end, error] =
          std::from_chars(text.data() + at, text.data() + text.size(), number);
      if (error != std::errc()) {
        return false;
      }
      at = static_cast<std::size_t>(end - text.data());
      constexpr std::int64_t most = 1'000'000'000'000;  // microseconds of it still fit
      number = std::clamp(number, -most, most);
      if (part.field != Field::Number &&
          resolution_ >= (part.field == Field::Seconds ? kSecond : kMillisecond)) {
        head.time = number * (part.field == Field::Seconds ? kSecond : kMillisecond);
      }
      break;
    }
    default: {
      // Up to the literal that follows, on the same line.
      const std::string_view room = text.substr(at, kMaxField);
      std::size_t size = 0;
      if (index + 1 < parts.size() && parts[index + 1].field == Field::Literal) {
        size = room.find(parts[index + 1].text);
      } else {
        size = std::min(room.find(' '), room.size());
      }
      if (size == std::string_view::npos ||
          room.substr(0, size).find('\n') != std::string_view::npos) {
        return false;
      }
      at += size;
      std::string_view value = text.substr(valueBegin, size);
      if (part.minWidth != 0 && part.alignLeft) {
        value = value.substr(0, value.find_last_not_of(' ') + 1);
      }
      (part.field == Field::Thread ? head.thread : head.category) =
          part.field == Field::Text ? head.category : value;
      return true;
    }
  }
  if (part.minWidth != 0 && part.alignLeft) {
    while (at - begin < part.minWidth) {
      if (at == text.size() || text[at] != ' ') {
        return false;
      }
      ++at;
    }
  }
  return true;
}

bool Layout::Match(std::string_view text, RecordHead& head) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < front_.size(); ++i) {
    if (!MatchPart(front_, i, text, at, head)) {
      return false;
    }
  }
  head.messageBegin = at;
  return true;
}

std::string_view Layout::WithoutTail(std::string_view message, RecordHead& head) {
  if (tail_.empty()) {
    return message;
  }
  for (std::size_t begin = message.rfind(tail_[0].text);
       begin != std::string_view::npos && begin > 0;
       begin = message.rfind(tail_[0].text, begin - 1)) {
    std::size_t at = begin;
    RecordHead whole = head;
    bool fits = true;
    for (std::size_t i = 0; fits && i < tail_.size(); ++i) {
      // A text at the very end reaches up to it.
      const bool isLastText = i + 1 == tail_.size() &&
                              (tail_[i].field == Field::Thread ||
                               tail_[i].field == Field::Category || tail_[i].field == Field::Text);
      if (isLastText) {
        (tail_[i].field == Field::Thread ? whole.thread : whole.category) = message.substr(at);
        at = message.size();
      } else {
        fits = MatchPart(tail_, i, message, at, whole);
      }
    }
    if (fits && at == message.size()) {
      head = whole;
      return message.substr(0, begin);
    }
  }
  return message;
}

}  // namespace vextrel::program
