// SPDX-License-Identifier: MIT
#include "comparison.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <sstream>
#include <utility>

namespace vextrel_test {
namespace {

constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;
constexpr std::size_t kAddressDigits = 16;
constexpr std::size_t kAddressBytes = 8;
constexpr std::size_t kEventBytes = 2 * kAddressBytes;
constexpr std::string_view kDecimalDigits = "0123456789";
constexpr std::string_view kUpperDigits = "0123456789ABCDEF";
constexpr std::string_view kLowerDigits = "0123456789abcdef";

[[nodiscard]] std::uint64_t Number(std::string_view digits, int base) {
  std::uint64_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  return value;
}

[[nodiscard]] std::string Text(std::uint64_t value, int base) {
  char digits[20];
  return {digits, std::to_chars(digits, digits + sizeof digits, value, base).ptr};
}

[[nodiscard]] bool IsLowerCase(std::string_view name) {
  return !name.empty() && name.front() >= 'a' && name.front() <= 'z';
}

// The addresses that names stand for.
class Names {
 public:
  // False if the name stands for another address.
  [[nodiscard]] bool Agree(std::string_view name, std::uint64_t address) {
    Entry& entry = Use(name);
    if (!entry.isKnown) {
      entry.isKnown = true;
      entry.address = address;
    }
    return entry.address == address && (!entry.isHalfKnown || entry.half == Low(address));
  }

  [[nodiscard]] bool AgreeOnHalf(std::string_view name, std::uint32_t half) {
    Entry& entry = Use(name);
    const bool agrees = (!entry.isKnown || Low(entry.address) == half) &&
                        (!entry.isHalfKnown || entry.half == half);
    entry.isHalfKnown = true;
    entry.half = half;
    return agrees;
  }

  // A name that stands only once, empty if there is none.
  [[nodiscard]] std::string FindUseless() const {
    const auto found = std::ranges::find_if(
        entries_, [](const auto& named) { return named.second.uses < 2 || !named.second.isKnown; });
    return found != entries_.end() ? found->first : "";
  }

  void Clear() { entries_.clear(); }

 private:
  struct Entry {
    std::size_t uses = 0;
    bool isKnown = false;
    std::uint64_t address = 0;
    bool isHalfKnown = false;
    std::uint32_t half = 0;
  };

  [[nodiscard]] static std::uint32_t Low(std::uint64_t address) {
    return static_cast<std::uint32_t>(address);
  }

  [[nodiscard]] Entry& Use(std::string_view name) {
    Entry& entry = entries_[std::string(name)];
    ++entry.uses;
    return entry;
  }

  std::map<std::string, Entry> entries_;
};

// Reads the actual log from its beginning to its end. What has been read agrees.
class Reader {
 public:
  Reader(std::string_view actual, const Texts& texts) : actual_(actual), texts_(texts) {}

  // False at the first difference: Wanted() is what should have come instead of Rest().
  [[nodiscard]] bool ReadLine(std::string_view expected) {
    lineBegin_ = position_;
    ++line_;
    while (!expected.empty()) {
      if (!ReadNext(expected)) {
        return false;
      }
    }
    if (const std::string useless = namesOfLine_.FindUseless(); !useless.empty()) {
      return Refuse("another <" + useless + ">");
    }
    namesOfLine_.Clear();
    return ReadText("\n");
  }

  [[nodiscard]] std::string FindUselessName() const { return names_.FindUseless(); }

  [[nodiscard]] const std::string& Wanted() const { return wanted_; }
  [[nodiscard]] std::string_view Rest() const { return actual_.substr(position_); }
  [[nodiscard]] std::size_t Line() const { return line_; }
  [[nodiscard]] std::string_view ReadOfLine() const {
    return actual_.substr(lineBegin_, position_ - lineBegin_);
  }

 private:
  [[nodiscard]] bool Refuse(std::string wanted) {
    wanted_ = std::move(wanted);
    return false;
  }

  // Takes the next piece off the expected line.
  [[nodiscard]] bool ReadNext(std::string_view& expected) {
    constexpr std::size_t escapeSize = 4;
    if (expected.front() == '<') {
      const std::size_t end = expected.find('>');
      const std::string_view mark = expected.substr(1, end - 1);
      expected.remove_prefix(std::min(end, expected.size() - 1) + 1);
      return ReadMark(mark);
    }
    if (expected.starts_with("\\x")) {
      const char byte = static_cast<char>(Number(expected.substr(2, 2), kHexadecimal));
      expected.remove_prefix(std::min(escapeSize, expected.size()));
      return ReadText({&byte, 1});
    }
    const std::size_t size = std::min(expected.find_first_of("<\\", 1), expected.size());
    const std::string_view text = expected.substr(0, size);
    expected.remove_prefix(size);
    return ReadText(text);
  }

  [[nodiscard]] bool ReadMark(std::string_view mark) {
    constexpr std::string_view lowHalf = "LOW HALF OF ";
    constexpr std::string_view event = "EVENT DATA OF ";
    constexpr std::string_view conjunction = " AND ";
    if (const auto text = texts_.find(mark); text != texts_.end()) {
      return ReadText(text->second);
    }
    if (mark == "ADDRESS") {
      return ReadAddress([](std::uint64_t) { return true; });
    }
    if (mark == "ADDRESS IN LOWER CASE") {
      return ReadNumber(kLowerDigits, kHexadecimal, UINT64_MAX,
                        [](std::uint64_t address) { return address != 0; });
    }
    if (mark == "TIME") {
      return ReadNumber(kDecimalDigits, kDecimal, UINT32_MAX, [](std::uint64_t) { return true; });
    }
    if (mark.starts_with(lowHalf)) {
      const std::string_view name = mark.substr(lowHalf.size());
      return ReadNumber(kLowerDigits, kHexadecimal, UINT32_MAX, [&](std::uint64_t half) {
        return names_.AgreeOnHalf(name, static_cast<std::uint32_t>(half));
      });
    }
    if (const std::size_t middle = mark.find(conjunction);
        mark.starts_with(event) && middle != std::string_view::npos) {
      return ReadEventData(mark.substr(event.size(), middle - event.size()),
                           mark.substr(middle + conjunction.size()));
    }
    Names& names = IsLowerCase(mark) ? namesOfLine_ : names_;
    if (!ReadAddress([&](std::uint64_t address) { return names.Agree(mark, address); })) {
      return Refuse("the address <" + std::string(mark) + ">");
    }
    return true;
  }

  [[nodiscard]] bool ReadText(std::string_view text) {
    const std::string_view rest = Rest();
    const auto same = static_cast<std::size_t>(
        std::mismatch(text.begin(), text.end(), rest.begin(), rest.end()).first - text.begin());
    position_ += same;
    return same == text.size() || Refuse("'" + std::string(text.substr(same)) + "'");
  }

  [[nodiscard]] std::string_view PeekDigits(std::string_view alphabet) const {
    const std::string_view rest = Rest();
    return rest.substr(0, std::min(rest.find_first_not_of(alphabet), rest.size()));
  }

  [[nodiscard]] bool ReadAddress(const std::function<bool(std::uint64_t)>& isRight) {
    const std::string_view digits = PeekDigits(kUpperDigits);
    const std::uint64_t address = Number(digits, kHexadecimal);
    if (digits.size() != kAddressDigits || address == 0 || !isRight(address)) {
      return Refuse("an address of sixteen upper-case digits");
    }
    position_ += digits.size();
    return true;
  }

  // A number without leading zeros.
  [[nodiscard]] bool ReadNumber(std::string_view alphabet, int base, std::uint64_t highest,
                                const std::function<bool(std::uint64_t)>& isRight) {
    const std::string_view digits = PeekDigits(alphabet);
    const std::uint64_t value = Number(digits, base);
    if (digits != Text(value, base) || value > highest || !isRight(value)) {
      return Refuse("another number of base " + std::to_string(base));
    }
    position_ += digits.size();
    return true;
  }

  [[nodiscard]] bool ReadByte(std::uint8_t& byte) {
    constexpr std::size_t count = 2;
    if (!ReadText("0x")) {
      return false;
    }
    const std::string_view digits = PeekDigits(kLowerDigits);
    if (digits.size() != count) {
      return Refuse("two lower-case digits");
    }
    byte = static_cast<std::uint8_t>(Number(digits, kHexadecimal));
    position_ += count;
    return true;
  }

  [[nodiscard]] bool ReadEventData(std::string_view first, std::string_view second) {
    std::uint64_t addresses[2] = {};
    for (std::size_t index = 0; index < kEventBytes; ++index) {
      std::uint8_t byte = 0;
      if ((index != 0 && !ReadText(",")) || !ReadByte(byte)) {
        return false;
      }
      constexpr std::size_t bitsPerByte = 8;
      addresses[index / kAddressBytes] |= std::uint64_t{byte}
                                          << (bitsPerByte * (index % kAddressBytes));
    }
    if (!names_.Agree(first, addresses[0]) || !names_.Agree(second, addresses[1])) {
      return Refuse("the bytes of <" + std::string(first) + "> and <" + std::string(second) +
                    "> before this");
    }
    return ReadText("\n");
  }

  std::string_view actual_;
  const Texts& texts_;
  Names names_;
  Names namesOfLine_;
  std::size_t position_ = 0;
  std::size_t lineBegin_ = 0;
  std::size_t line_ = 0;
  std::string wanted_;
};

// Short and fit to print: control characters and bytes beyond ASCII as \xHH.
[[nodiscard]] std::string Printable(std::string_view text) {
  constexpr std::size_t most = 300;
  std::string printable;
  for (const char letter : text.substr(0, most)) {
    const auto byte = static_cast<std::uint8_t>(letter);
    if (byte >= 0x20 && byte < 0x7F) {
      printable += letter;
    } else {
      printable += std::string("\\x") + kLowerDigits[byte / 16] + kLowerDigits[byte % 16];
    }
  }
  return printable + (text.size() > most ? "..." : "");
}

[[nodiscard]] std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find('\n'));
}

[[nodiscard]] std::string Describe(const Reader& reader, std::string_view expectedLine) {
  const std::string_view read = reader.ReadOfLine();
  constexpr std::size_t context = 100;
  std::ostringstream text;
  text << "message " << reader.Line() << " differs after " << read.size() << " bytes\n"
       << "  expected:  " << expectedLine << '\n'
       << "  it has:    " << Printable(read.substr(read.size() - std::min(read.size(), context)))
       << '\n'
       << "  and then:  " << Printable(FirstLine(reader.Rest())) << '\n'
       << "  not:       " << Printable(reader.Wanted()) << '\n';
  return text.str();
}

}  // namespace

std::string FindDifference(std::string_view expected, std::string_view actual, const Texts& texts) {
  Reader reader(actual, texts);
  std::istringstream lines{std::string(expected)};
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with('#') && !reader.ReadLine(line)) {
      return Describe(reader, line);
    }
  }
  if (!reader.Rest().empty()) {
    return "no more is expected than " + std::to_string(reader.Line()) +
           " messages, but then comes\n  " + Printable(FirstLine(reader.Rest())) + '\n';
  }
  if (const std::string useless = reader.FindUselessName(); !useless.empty()) {
    return "the name <" + useless + "> stands only once\n";
  }
  return "";
}

}  // namespace vextrel_test
