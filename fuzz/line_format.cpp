// The line formatter with random formats and values, against the C library's own formatting.
#include "calllog/line_format.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "calllog/rendered_text.h"
#include "check.h"
#include "exact_memory.h"
#include "letters.h"

namespace {

using vextrel::Conversion;
using vextrel::FormatPiece;
using vextrel::FormatValue;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
using vextrel_fuzz::Letters;

struct Known {
  std::string_view text;
  Conversion conversion;
};
constexpr Known kKnown[] = {
    {"s", Conversion::Text},        {"p", Conversion::Pointer},  {"u", Conversion::Unsigned32},
    {"lu", Conversion::Unsigned32}, {"d", Conversion::Signed32}, {"x", Conversion::Hex32},
    {"llx", Conversion::Hex64},
};

// A format that is in order: percent signs of no conversion are left out, and so are conversions
// beyond the most that a line may have.
struct Format {
  explicit Format(std::string_view input) {
    std::size_t literal = 0;
    for (std::size_t i = 0; i < input.size(); ++i) {
      if (input[i] != '%') {
        text += input[i];
        ++literal;
        continue;
      }
      const Known* known = Match(input.substr(i + 1));
      if (known != nullptr && pieces.size() < vextrel::kMaxConversions) {
        text.append("%").append(known->text);
        pieces.push_back({static_cast<std::uint16_t>(literal),
                          static_cast<std::uint16_t>(known->text.size() + 1), known->conversion});
        literal = 0;
        i += known->text.size();
      }
    }
  }

  static const Known* Match(std::string_view rest) {
    for (const Known& known : kKnown) {
      if (rest.substr(0, known.text.size()) == known.text) {
        return &known;
      }
    }
    return nullptr;
  }

  std::string text;
  std::vector<FormatPiece> pieces;
};

// A value for the formatter, and what it is to the model.
struct Value {
  FormatValue value;
  std::uint64_t bits;
  std::string text;  // under %s
};

std::uint64_t Bits(const void* address) {
  return reinterpret_cast<std::uintptr_t>(address);
}

// The values of one line, with the memory that they refer to.
class Values {
 public:
  explicit Values(FuzzedDataProvider& data) : data_(data) {}

  // Something that may stand under the conversion, at its place or misplaced.
  Value Make(Conversion conversion) {
    switch (data_.ConsumeIntegralInRange(0, 8)) {
      case 0:
        return {vextrel::noValue, 0, "(null)"};
      case 1:
        return MakeText();
      case 2:
        return MakeSizedText();
      case 3:
        return MakeRenderedText();
      case 4:
        return conversion == Conversion::Text ? MakeText() : MakeAddress();
      case 5:
        return Number(data_.ConsumeIntegral<std::uint64_t>());
      case 6:
        return Number(data_.ConsumeIntegral<std::uint32_t>());
      case 7:
        // Nothing says what a negative number is under a conversion that it is not meant for.
        return conversion == Conversion::Text ? Number(data_.ConsumeBool())
                                              : Number(data_.ConsumeIntegral<std::int32_t>());
      default:
        return conversion == Conversion::Text ? Number(data_.ConsumeIntegral<std::uint8_t>())
                                              : Number(data_.ConsumeIntegral<std::int64_t>());
    }
  }

 private:
  template <typename Number>
  static Value Number(Number number) {
    return {number, static_cast<std::uint64_t>(number),
            std::to_string(static_cast<std::uint64_t>(number))};
  }

  Value MakeAddress() {
    const auto address = data_.ConsumeIntegral<std::uintptr_t>();
    return {reinterpret_cast<const void*>(address), address, {}};
  }

  const ExactMemory& Keep(std::string_view bytes) {
    return memory_.emplace_back(bytes, data_.ConsumeIntegralInRange<std::size_t>(0, 7));
  }

  // Up to its zero byte, and not a byte further.
  Value MakeText() {
    const std::string letters = Letters(data_).c_str();
    const char* text = Keep({letters.c_str(), letters.size() + 1}).data();
    return {text, Bits(text), letters};
  }

  // No zero byte is needed at its end; one inside ends it.
  Value MakeSizedText() {
    const std::string letters = Letters(data_);
    const std::string_view text(Keep(letters).data(), letters.size());
    return {text, Bits(text.data()), letters.c_str()};
  }

  Value MakeRenderedText() {
    const std::string letters = Letters(data_);
    const vextrel::RenderedText& text =
        rendered_.emplace_back(std::initializer_list<std::string_view>{letters, letters});
    return {text, Bits(text.c_str()), (letters + letters).c_str()};
  }

  FuzzedDataProvider& data_;
  std::deque<ExactMemory> memory_;
  std::deque<vextrel::RenderedText> rendered_;
};

std::string Expected(Conversion conversion, const Value& value) {
  const auto low32 = static_cast<std::uint32_t>(value.bits);
  std::array<char, 32> text{};
  switch (conversion) {
    case Conversion::Text:
      return value.text;
    case Conversion::Pointer:
      std::snprintf(text.data(), text.size(), "%016" PRIX64, value.bits);
      break;
    case Conversion::Unsigned32:
      std::snprintf(text.data(), text.size(), "%" PRIu32, low32);
      break;
    case Conversion::Signed32:
      std::snprintf(text.data(), text.size(), "%" PRId32, static_cast<std::int32_t>(low32));
      break;
    case Conversion::Hex32:
      std::snprintf(text.data(), text.size(), "%" PRIx32, low32);
      break;
    case Conversion::Hex64:
      std::snprintf(text.data(), text.size(), "%" PRIx64, value.bits);
      break;
  }
  return text.data();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const Format format(data.ConsumeRandomLengthString(400));
  Values values(data);
  std::vector<FormatValue> given;
  std::string expected;
  std::size_t at = 0;
  for (const FormatPiece& piece : format.pieces) {
    const Value value = values.Make(piece.conversion);
    given.push_back(value.value);
    expected.append(format.text, at, piece.literalSize);
    expected += Expected(piece.conversion, value);
    at += std::size_t{piece.literalSize} + piece.conversionSize;
  }
  expected.append(format.text, at);
  CheckText(vextrel::FormatLine(format.text, format.pieces, given), expected);
  return 0;
}
