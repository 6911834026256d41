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
  // What the buffer begins with; otherwise it is a text.
  std::optional<double> number = std::nullopt;
};

class ConsumerCall {
 public:
  ConsumerCall(const UniformFunction& function, Shape shape);

  // The pattern that a value in this place of an argument list has: bits set in every byte, others
  // in every place.
  [[nodiscard]] static std::uint64_t ValueAt(std::size_t place);

  [[nodiscard]] const Patterns& arguments() const { return arguments_; }
  [[nodiscard]] const ConsumerMemory::Bytes& memory() const { return memory_.bytes(); }
  [[nodiscard]] const UniformFunction& function() const { return function_; }

  // Writes through the arguments, which are the ones that the target got, as a target would.
  void WriteAnswer(const Patterns& arguments, const Answer& answer) const;

  // For messages: the argument whose memory lies there, or the guards.
  [[nodiscard]] std::string NameOf(std::size_t offset) const;

 private:
  [[nodiscard]] std::uint64_t Make(std::size_t place);
  [[nodiscard]] std::uint64_t Room(std::size_t place, std::size_t size);
  [[nodiscard]] std::uint64_t MakeEntries(std::size_t place);
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
