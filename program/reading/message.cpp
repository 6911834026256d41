// SPDX-License-Identifier: MIT
#include "reading/message.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "calllog/log_text.h"
#include "reading/value_reading.h"

namespace vextrel::program {
namespace {

constexpr std::string_view kSuccess = "GC_ERR_SUCCESS=";
constexpr std::string_view kResults = "GC_ERR_";
constexpr std::string_view kUnknown = "(Unknown ";
constexpr std::string_view kNull = "NULL";
constexpr std::string_view kTiming = "Call ";
constexpr std::size_t kHex16 = 16;
// How often the text behind a free text is looked for before the line counts as unreadable.
constexpr int kMostTries = 256;

struct Digits {
  std::array<std::uint8_t, 256> values{};
};
constexpr std::uint8_t kNoDigit = 0xFF;
constexpr Digits kHexDigits = [] {
  Digits digits;
  digits.values.fill(kNoDigit);
  for (std::uint8_t i = 0; i < 10; ++i) {
    digits.values[static_cast<std::size_t>('0' + i)] = i;
  }
  for (std::uint8_t i = 0; i < 6; ++i) {
    digits.values[static_cast<std::size_t>('a' + i)] = static_cast<std::uint8_t>(10 + i);
    digits.values[static_cast<std::size_t>('A' + i)] = static_cast<std::uint8_t>(10 + i);
  }
  return digits;
}();

std::uint8_t HexDigit(char each) noexcept {
  return kHexDigits.values[static_cast<std::uint8_t>(each)];
}

bool ReadHex16(const char* text, std::uint64_t& number) noexcept {
  std::uint64_t value = 0;
  std::uint8_t all = 0;
  for (std::size_t i = 0; i < kHex16; ++i) {
    const std::uint8_t digit = HexDigit(text[i]);
    all = static_cast<std::uint8_t>(all | digit);
    value = value << 4U | (digit & 0xFU);
  }
  number = value;
  return (all & 0xF0U) == 0;
}

// A table, because every character of a name is looked at.
constexpr std::array<bool, 256> kIsWord = [] {
  std::array<bool, 256> words{};
  for (const char each : "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") {
    words[static_cast<unsigned char>(each)] = each != '\0';
  }
  return words;
}();

bool IsWord(char each) noexcept {
  return kIsWord[static_cast<unsigned char>(each)];
}

bool IsDecimal(char each) noexcept {
  return each >= '0' && each <= '9';
}

// A parse of one message against one shape. Two pointers into the message move toward each other.
class Match {
 public:
  Match(const LineShape& shape, std::string_view text, Message& message) noexcept
      : shape_(shape), text_(text), values_(message.values) {}

  // The places from `index` on, the first of which starts at `at`.
  bool From(std::size_t index, std::size_t at) noexcept {
    for (; index < shape_.places.size(); ++index) {
      const Place& place = shape_.places[index];
      if (!TakeLiteral(place.literal, at)) {
        return false;
      }
      if (IsFreeText(place)) {
        return FreeText(index, at);
      }
      if (!TakeValue(place, at, values_[index])) {
        return false;
      }
    }
    return text_.substr(at) == shape_.tail;
  }

 private:
  bool TakeLiteral(std::string_view literal, std::size_t& at) const noexcept {
    if (text_.size() - at < literal.size() || (!literal.empty() && text_[at] != literal.front()) ||
        std::memcmp(text_.data() + at, literal.data(), literal.size()) != 0) {
      return false;
    }
    at += literal.size();
    return true;
  }

  template <typename Number>
  bool TakeNumber(int base, std::size_t& at, PlaceValue& value) const noexcept {
    const char* begin = text_.data() + at;
    Number number{};
    const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), number, base);
    if (error != std::errc()) {
      return false;
    }
    value.text = {begin, static_cast<std::size_t>(end - begin)};
    value.number = static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
    at += value.text.size();
    return true;
  }

  bool TakeName(std::size_t& at, PlaceValue& value) const noexcept {
    std::size_t end = at;
    if (at < text_.size() && text_[at] == '(' && text_.substr(at).starts_with(kUnknown)) {
      end = text_.find(')', at);
      if (end == std::string_view::npos) {
        return false;
      }
      ++end;
    } else {
      while (end < text_.size() && IsWord(text_[end])) {
        ++end;
      }
    }
    value.text = text_.substr(at, end - at);
    at = end;
    return !value.text.empty();
  }

  bool TakeValue(const Place& place, std::size_t& at, PlaceValue& value) const noexcept {
    switch (place.conversion) {
      case Conversion::Text:
        return TakeWord(place, at, value);
      case Conversion::Pointer:
        if (text_.size() - at < kHex16) {
          return false;
        }
        value.text = text_.substr(at, kHex16);
        at += kHex16;
        return place.meaning == Meaning::Address || ReadHex16(value.text.data(), value.number);
      case Conversion::Unsigned32:
        return TakeNumber<std::uint32_t>(10, at, value);
      case Conversion::Signed32:
        return TakeNumber<std::int32_t>(10, at, value);
      case Conversion::Hex32:
        return TakeNumber<std::uint32_t>(16, at, value);
      case Conversion::Hex64:
        // from_chars would take the bits of a number above the signed ones the same way.
        return TakeHex64(at, value);
      case Conversion::Unsigned64:
        return TakeNumber<std::uint64_t>(10, at, value);
    }
    return false;
  }

  bool TakeWord(const Place& place, std::size_t& at, PlaceValue& value) const noexcept {
    if (place.meaning == Meaning::Name) {
      return TakeName(at, value);
    }
    if (place.meaning == Meaning::Duration) {
      return TakeDuration(at, value);
    }
    if (at < text_.size() && text_[at] == 'N' && text_.substr(at).starts_with(kNull)) {
      value = {text_.substr(at, kNull.size()), 0};
      at += kNull.size();
      return true;
    }
    if (place.meaning == Meaning::NumberAsText) {
      return TakeNumber<std::uint64_t>(10, at, value);
    }
    if (!text_.substr(at).starts_with("0x") || text_.size() - at < 2 + kHex16) {
      return false;
    }
    value.text = text_.substr(at + 2, kHex16);
    at += 2 + kHex16;
    return ReadHex16(value.text.data(), value.number);
  }

  // `12.345` microseconds.
  bool TakeDuration(std::size_t& at, PlaceValue& value) const noexcept {
    constexpr std::size_t decimals = 3;
    PlaceValue whole;
    PlaceValue fraction;
    const std::size_t begin = at;
    if (!TakeNumber<std::uint64_t>(10, at, whole) || !TakeLiteral(".", at) ||
        !TakeNumber<std::uint32_t>(10, at, fraction) || fraction.text.size() != decimals) {
      return false;
    }
    value = {text_.substr(begin, at - begin), whole.number * 1000 + fraction.number};
    return true;
  }

  bool TakeHex64(std::size_t& at, PlaceValue& value) const noexcept {
    const char* begin = text_.data() + at;
    const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), value.number, 16);
    value.text = {begin, static_cast<std::size_t>(end - begin)};
    at += value.text.size();
    return error == std::errc();
  }

  bool FreeText(std::size_t index, std::size_t at) noexcept {
    if (index == shape_.lastText) {
      return TextBeforeTail(index, at);
    }
    const Place& next = shape_.places[index + 1];
    if (next.meaning == Meaning::Dump) {
      return TextAndDump(index, at);
    }
    for (std::size_t end = at; tries_ > 0; ++end, --tries_) {
      end = text_.find(next.literal, end);
      if (end == std::string_view::npos) {
        return false;
      }
      values_[index].text = text_.substr(at, end - at);
      if (From(index + 1, end)) {
        return true;
      }
    }
    return false;
  }

  // The last free text: what follows is taken from the line's end.
  bool TextBeforeTail(std::size_t index, std::size_t at) noexcept {
    std::string_view rest = text_.substr(at);
    if (!TakeFromEnd(shape_.tail, rest)) {
      return false;
    }
    for (std::size_t i = shape_.places.size() - 1; i > index; --i) {
      if (!ValueFromEnd(shape_.places[i], rest, values_[i]) ||
          !TakeFromEnd(shape_.places[i].literal, rest)) {
        return false;
      }
    }
    values_[index].text = rest;
    return true;
  }

  static bool TakeFromEnd(std::string_view literal, std::string_view& rest) noexcept {
    if (!rest.ends_with(literal)) {
      return false;
    }
    rest.remove_suffix(literal.size());
    return true;
  }

  bool ValueFromEnd(const Place& place, std::string_view& rest, PlaceValue& value) noexcept {
    std::size_t begin = rest.size();
    if (place.conversion == Conversion::Pointer) {
      begin -= std::min(begin, kHex16);
    } else if (place.conversion == Conversion::Text) {
      while (begin > 0 && IsWord(rest[begin - 1])) {
        --begin;
      }
    } else if (place.conversion == Conversion::Hex32 || place.conversion == Conversion::Hex64) {
      while (begin > 0 && HexDigit(rest[begin - 1]) != kNoDigit) {
        --begin;
      }
    } else {
      while (begin > 0 && (IsDecimal(rest[begin - 1]) || rest[begin - 1] == '-')) {
        --begin;
      }
    }
    const auto base = static_cast<std::size_t>(rest.data() - text_.data());
    std::size_t at = base + begin;
    if (!TakeValue(place, at, value) || at != base + rest.size()) {
      return false;
    }
    rest = rest.substr(0, begin);
    return true;
  }

  // `text,dump`: the text may hold commas, but the dump's length follows from its size.
  bool TextAndDump(std::size_t index, std::size_t at) noexcept {
    if (!TextBeforeTail(index + 1, at)) {
      return false;
    }
    const std::string_view both = values_[index + 1].text;
    const std::uint64_t size = values_[shape_.places.size() - 1].number;
    for (const std::size_t lineBreak : {std::size_t{1}, std::size_t{2}}) {
      const std::uint64_t length = DumpLength(size, lineBreak);
      if (length < both.size() && both[both.size() - length - 1] == ',' &&
          (length == 0 || both.substr(both.size() - length).starts_with("0x"))) {
        values_[index].text = both.substr(0, both.size() - static_cast<std::size_t>(length) - 1);
        values_[index + 1].text = both.substr(both.size() - static_cast<std::size_t>(length));
        return true;
      }
    }
    // A size that isn't the dump's.
    const std::size_t comma = both.find(",0x");
    const std::size_t split = comma != std::string_view::npos ? comma : both.rfind(',');
    if (split == std::string_view::npos) {
      return false;
    }
    values_[index].text = both.substr(0, split);
    values_[index + 1].text = both.substr(split + 1);
    return true;
  }

  static std::uint64_t DumpLength(std::uint64_t size, std::size_t lineBreak) noexcept {
    constexpr std::uint64_t perLine = 16;
    return size == 0 ? 0 : size * 5 - 1 + (size - 1) / perLine * lineBreak;
  }

  const LineShape& shape_;
  std::string_view text_;
  std::array<PlaceValue, kMaxConversions>& values_;
  int tries_ = kMostTries;
};

// Takes `RESULT=` off the text.
bool TakeResult(std::string_view& text, GC_ERROR& result) noexcept {
  if (text.starts_with(kSuccess)) {
    text.remove_prefix(kSuccess.size());
    result = GC_ERR_SUCCESS;
    return true;
  }
  std::size_t end = 0;
  if (text.starts_with(names::kGcErrorUnknown)) {
    end = text.find(")=");
    end = end == std::string_view::npos ? end : end + 1;
  } else if (text.starts_with(kResults)) {
    end = text.substr(0, kMessageHead).find('=');
  } else {
    return false;
  }
  if (end == std::string_view::npos || !ReadResult(text.substr(0, end), result)) {
    return false;
  }
  text.remove_prefix(end + 1);
  return true;
}

// Takes `Function(` off the text.
std::size_t TakeFunction(std::string_view& text) noexcept {
  std::size_t size = 0;
  while (size < text.size() && IsWord(text[size])) {
    ++size;
  }
  if (size == 0 || size == text.size() || text[size] != '(') {
    return kNoPlace;
  }
  const std::size_t shape = FindCallShape(text.substr(0, size));
  text.remove_prefix(size + 1);
  return shape;
}

bool ParseCall(std::string_view text, Message& message) {
  if (!TakeResult(text, message.result)) {
    return false;
  }
  std::size_t index = TakeFunction(text);
  if (index == kNoPlace) {
    return false;
  }
  do {
    const LineShape& shape = CallShapes()[index];
    if (Match(shape, text, message).From(0, 0)) {
      message.kind = MessageKind::Call;
      message.line = static_cast<std::uint16_t>(index);
      message.function = shape.functionIndex;
      message.shape = &shape;
      return true;
    }
    index = shape.next;
  } while (index != 0);
  return false;
}

bool ParseTiming(std::string_view text, Message& message) {
  if (!text.starts_with(kTiming)) {
    return false;
  }
  const std::span<const LineShape> shapes = TimingShapes();
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    if (!Match(shapes[i], text, message).From(0, 0)) {
      continue;
    }
    const std::size_t shape = FindCallShape(message.values[1].text);
    if (shape == kNoPlace) {
      return false;
    }
    message.kind = shapes[i].text == decltype(timing::kLeaves)::Text() ? MessageKind::Leaves
                                                                       : MessageKind::Enters;
    message.line = static_cast<std::uint16_t>(i);
    message.function = CallShapes()[shape].functionIndex;
    message.shape = &shapes[i];
    return true;
  }
  return false;
}

bool StartsTiming(std::string_view text) noexcept {
  if (!text.starts_with(kTiming)) {
    return false;
  }
  text.remove_prefix(kTiming.size());
  const std::size_t digits = text.find_first_not_of("0123456789");
  if (digits == 0 || digits == std::string_view::npos) {
    return false;
  }
  text.remove_prefix(digits);
  return text.starts_with(" enters ") || text.starts_with(" leaves ");
}

bool IsReport(std::size_t index, std::string_view text, Message& message) {
  const LineShape& shape = ReportShapes()[index];
  if (!Match(shape, text, message).From(0, 0)) {
    return false;
  }
  // "%s not exported" would take any text that ends like that.
  return !shape.places.empty() && shape.places[0].literal.empty()
             ? std::all_of(message.values[0].text.begin(), message.values[0].text.end(), IsWord)
             : true;
}

bool ParseReport(std::string_view text, Message& message) {
  const std::span<const LineShape> shapes = ReportShapes();
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    if (IsReport(i, text, message)) {
      message.kind = MessageKind::Report;
      message.line = static_cast<std::uint16_t>(i);
      message.shape = &shapes[i];
      return true;
    }
  }
  return false;
}

bool StartsReport(std::string_view text) noexcept {
  constexpr std::size_t telling = 8;
  for (const LineShape& shape : ReportShapes()) {
    const std::string_view head = shape.places.empty() ? shape.tail : shape.places[0].literal;
    if (head.size() >= telling && text.starts_with(head)) {
      return true;
    }
  }
  return false;
}

}  // namespace

void ParseMessage(std::string_view text, Message& message) {
  message.text = text;
  message.result = GC_ERR_SUCCESS;
  if (ParseCall(text, message) || ParseTiming(text, message) || ParseReport(text, message)) {
    return;
  }
  message.kind = MessageKind::Other;
  message.shape = nullptr;
  message.line = 0;
  message.result = GC_ERR_SUCCESS;
}

bool ResemblesMessage(std::string_view text) noexcept {
  return text.starts_with(kResults) || text.starts_with(names::kGcErrorUnknown) ||
         StartsMessage(text);
}

bool StartsMessage(std::string_view text) noexcept {
  text = text.substr(0, kMessageHead);
  std::string_view rest = text;
  GC_ERROR result = GC_ERR_SUCCESS;
  if (TakeResult(rest, result)) {
    return TakeFunction(rest) != kNoPlace;
  }
  if (StartsTiming(text) || StartsReport(text)) {
    return true;
  }
  std::size_t size = 0;
  while (size < text.size() && IsWord(text[size])) {
    ++size;
  }
  if (!text.substr(size).starts_with(" not exported")) {
    return false;
  }
  // One name has a letter too many in this report.
  const std::string_view name = text.substr(0, size);
  return FindCallShape(name) != kNoPlace ||
         (name.starts_with('G') && FindCallShape(name.substr(1)) != kNoPlace);
}

}  // namespace vextrel::program
