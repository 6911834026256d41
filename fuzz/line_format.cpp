// SPDX-License-Identifier: MIT
// The line formatter with random formats and values, against the model's printf.
#include "calllog/line_format.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "calllog/rendered_text.h"
#include "check.h"
#include "exact_memory.h"
#include "letters.h"
#include "model/windows_printf.h"

namespace {

using vextrel::Conversion;
using vextrel::FormatPiece;
using vextrel::FormatValue;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
using vextrel_fuzz::Letters;
namespace model = vextrel_test::model;

struct Known {
  std::string_view text;
  Conversion conversion;
};
constexpr Known kKnown[] = {
    {"s", Conversion::Text},        {"p", Conversion::Pointer},  {"u", Conversion::Unsigned32},
    {"lu", Conversion::Unsigned32}, {"d", Conversion::Signed32}, {"x", Conversion::Hex32},
    {"llx", Conversion::Hex64},
};

// A valid format: leaves out stray percent signs and conversions beyond the limit of a line.
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

// A value for the formatter, and the same for the model.
struct Value {
  FormatValue given;
  model::Value expected;
};

// The values of one line, with the memory that they refer to.
class Values {
 public:
  explicit Values(FuzzedDataProvider& data) : data_(data) {}

  // A value that the conversion can show, in place or misplaced.
  Value Make(Conversion conversion) {
    const bool isText = conversion == Conversion::Text;
    switch (data_.ConsumeIntegralInRange(0, 8)) {
      case 0:
        return {vextrel::kNoValue, model::Value(nullptr)};
      case 1:
        return MakeText();
      case 2:
        return MakeSizedText();
      case 3:
        return MakeRenderedText();
      case 4:
        return isText ? MakeText() : MakeAddress();
      case 5:
        return Number(data_.ConsumeIntegral<std::uint64_t>());
      case 6:
        return Number(data_.ConsumeIntegral<std::uint32_t>());
      // A misplaced negative number is unspecified.
      case 7:
        return isText ? Number(data_.ConsumeBool()) : Number(data_.ConsumeIntegral<std::int32_t>());
      default:
        return isText ? Number(data_.ConsumeIntegral<std::uint8_t>())
                      : Number(data_.ConsumeIntegral<std::int64_t>());
    }
  }

 private:
  template <typename Number>
  static Value Number(Number number) {
    return {number, number};
  }

  Value MakeAddress() {
    const auto* address = reinterpret_cast<const void*>(data_.ConsumeIntegral<std::uintptr_t>());
    return {address, address};
  }

  const ExactMemory& Keep(std::string_view bytes) {
    return memory_.emplace_back(bytes, data_.ConsumeIntegralInRange<std::size_t>(0, 7));
  }

  // Readable up to its zero byte and not a byte further.
  Value MakeText() {
    const std::string letters = Letters(data_).c_str();
    const char* text = Keep({letters.c_str(), letters.size() + 1}).data();
    return {text, text};
  }

  // Needs no terminating zero byte; one inside ends it.
  Value MakeSizedText() {
    const std::string letters = Letters(data_);
    const std::string_view text(Keep(letters).data(), letters.size());
    return {text, {letters, text.data()}};
  }

  Value MakeRenderedText() {
    const std::string letters = Letters(data_);
    const vextrel::RenderedText& text =
        rendered_.emplace_back(std::initializer_list<std::string_view>{letters, letters});
    return {text, {letters + letters, text.c_str()}};
  }

  FuzzedDataProvider& data_;
  std::deque<ExactMemory> memory_;
  std::deque<vextrel::RenderedText> rendered_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const Format format(data.ConsumeRandomLengthString(400));
  Values values(data);
  std::vector<FormatValue> given;
  std::vector<model::Value> expected;
  for (const FormatPiece& piece : format.pieces) {
    const Value value = values.Make(piece.conversion);
    given.push_back(value.given);
    expected.push_back(value.expected);
  }
  CheckText(vextrel::FormatLine(format.text, format.pieces, given),
            model::Print(format.text, expected).Text());
  return 0;
}
