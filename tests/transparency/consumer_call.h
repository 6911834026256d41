// SPDX-License-Identifier: MIT
// One call as a consumer makes it: the arguments with all the memory behind them.
#ifndef VEXTREL_TESTS_TRANSPARENCY_CONSUMER_CALL_H
#define VEXTREL_TESTS_TRANSPARENCY_CONSUMER_CALL_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "transparency/consumer_memory.h"
#include "transparency/uniform_function.h"

namespace vextrel_test {

enum class Shape : std::uint8_t {
  Complete,         // room for everything, and the target fills it
  Unanswered,       // the same, but the target writes nothing at all
  SizeQuery,        // null buffers, and a size that nobody has set
  TooSmall,         // a buffer for less than there is
  NothingOptional,  // null and zero wherever the interface allows it
};
inline constexpr Shape kShapes[] = {Shape::Complete, Shape::Unanswered, Shape::SizeQuery,
                                    Shape::TooSmall, Shape::NothingOptional};

// What a target answers.
struct Answer {
  GC_ERROR result = GC_ERR_SUCCESS;
  INFO_DATATYPE type = INFO_DATATYPE_STRING;
  // What the buffer starts with, instead of a text.
  std::optional<double> number = std::nullopt;
};

class ConsumerCall {
 public:
  ConsumerCall(const UniformFunction& function, Shape shape);

  // The pattern of a value in this place of the argument list. Every byte is set, and every place
  // has another pattern.
  [[nodiscard]] static std::uint64_t ValueAt(std::size_t place);

  [[nodiscard]] const Patterns& Arguments() const { return arguments_; }
  [[nodiscard]] const ConsumerMemory::Bytes& Memory() const { return memory_.Content(); }
  [[nodiscard]] const UniformFunction& Function() const { return function_; }

  // Writes the answer through the arguments, as a target that got them would.
  void WriteAnswer(const Patterns& arguments, const Answer& answer) const;

  // Names the argument whose memory lies there, or the guards, for a message.
  [[nodiscard]] std::string NameOf(std::size_t offset) const;

 private:
  [[nodiscard]] std::uint64_t Make(std::size_t place);
  [[nodiscard]] std::uint64_t Room(std::size_t place, std::size_t size);
  [[nodiscard]] std::uint64_t MakeEntries(std::size_t place);
  [[nodiscard]] std::uint64_t MakeNumbers(std::size_t place);
  template <typename Query>
  [[nodiscard]] std::uint64_t MakeQueries(std::size_t place);
  void Write(std::size_t place, std::uint64_t argument, const Answer& answer) const;

  const UniformFunction& function_;
  const Shape shape_;
  ConsumerMemory memory_;
  Patterns arguments_{};
  // Where the memory of each argument begins and ends.
  std::array<std::size_t, kMaxArguments> begins_{};
  std::array<std::size_t, kMaxArguments> ends_{};
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_CONSUMER_CALL_H
