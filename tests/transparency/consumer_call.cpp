// SPDX-License-Identifier: MIT
#include "transparency/consumer_call.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace vextrel_test {
namespace {

constexpr std::size_t kTextSize = 24;
constexpr std::size_t kBufferSize = 48;
constexpr std::size_t kTooSmallSize = 3;
// A consumer that asks for the size alone need not have set the variable.
constexpr std::uint64_t kUnsetSize = 0xCDCDCDCDCDCDCDCDU;
constexpr std::array<std::size_t, 3> kEntrySizes = {1, 16, 17};

// A text of that many characters and its zero, which says whose it is.
void FillWithText(std::uint8_t* room, std::size_t size, std::string_view text) {
  for (std::size_t i = 0; i < size - 1; ++i) {
    room[i] = static_cast<std::uint8_t>(text[i % text.size()]);
  }
  room[size - 1] = 0;
}

template <typename Value>
void WriteTo(std::uint64_t address, Value value) {
  std::memcpy(reinterpret_cast<void*>(static_cast<std::uintptr_t>(address)), &value, sizeof value);
}

std::uint8_t* BytesAt(std::uint64_t address) {
  return reinterpret_cast<std::uint8_t*>(static_cast<std::uintptr_t>(address));
}

// Each query gets the result and the type, and a value where there is room. The second claims more
// than there is room for, and where its buffer was stands an address that nobody may follow.
template <typename Query>
void AnswerQueries(std::uint64_t queries, const Answer& answer) {
  for (std::size_t i = 0; i < kEntrySizes.size(); ++i) {
    Query query{};
    std::memcpy(&query, BytesAt(queries + i * sizeof query), sizeof query);
    std::memset(query.pBuffer, '0' + static_cast<int>(i), query.iSize);
    if (answer.number && query.iSize >= sizeof *answer.number) {
      std::memcpy(query.pBuffer, &*answer.number, sizeof *answer.number);
    }
    query.iType = answer.type;
    query.iResult = answer.result;
    if (i == 1) {
      query.pBuffer = reinterpret_cast<void*>(std::uintptr_t{1});
      query.iSize = ~std::size_t{0};
    }
    WriteTo(queries + i * sizeof query, query);
  }
}

}  // namespace

ConsumerCall::ConsumerCall(const UniformFunction& function, Shape shape)
    : function_(function), shape_(shape) {
  for (std::size_t place = 0; place < kMaxArguments; ++place) {
    arguments_[place] = Make(place);
  }
  arguments_ = function_.narrow(arguments_);
}

std::uint64_t ConsumerCall::ValueAt(std::size_t place) {
  return 0xF1E2D3C4B5A69788U + 0x0101010101010101U * place;
}

std::uint64_t ConsumerCall::Make(std::size_t place) {
  const bool nothing = shape_ == Shape::NothingOptional;
  const bool noBuffer = nothing || shape_ == Shape::SizeQuery;
  switch (function_.roles[place]) {
    case Role::None:
      return 0;
    case Role::Value:
      return nothing ? 0 : ValueAt(place);
    case Role::Text: {
      if (nothing) {
        return 0;
      }
      const std::uint64_t text = Room(place, kTextSize);
      FillWithText(BytesAt(text), kTextSize, "consumer");
      return text;
    }
    case Role::Data:
    case Role::Buffer:
      return noBuffer ? 0 : Room(place, kBufferSize);
    case Role::OptionalOutput:
    case Role::OptionalType:
      return nothing ? 0 : Room(place, function_.pointeeSizes[place]);
    case Role::Output:
    case Role::Type:
      return Room(place, function_.pointeeSizes[place]);
    case Role::OptionalSize:
      if (nothing) {
        return 0;
      }
      [[fallthrough]];
    case Role::Size: {
      const std::uint64_t size = Room(place, sizeof(std::size_t));
      WriteTo<std::size_t>(size, noBuffer                    ? kUnsetSize
                                 : shape_ == Shape::TooSmall ? kTooSmallSize
                                                             : kBufferSize);
      return size;
    }
    case Role::EntriesRead:
    case Role::EntriesWritten:
      return noBuffer ? 0 : MakeEntries(place);
    case Role::OptionalCount:
      if (nothing) {
        return 0;
      }
      [[fallthrough]];
    case Role::Count: {
      const std::uint64_t count = Room(place, sizeof(std::size_t));
      WriteTo<std::size_t>(count, noBuffer ? 0 : kEntrySizes.size());
      return count;
    }
    case Role::Chunks:
      return noBuffer ? 0 : Room(place, kEntrySizes.size() * sizeof(SINGLE_CHUNK_DATA));
    case Role::Segments:
    case Role::Sizes:
      return noBuffer ? 0 : MakeNumbers(place);
    case Role::Infos:
      return noBuffer ? 0 : MakeQueries<DS_BUFFER_INFO_STACKED>(place);
    case Role::PartInfos:
      return noBuffer ? 0 : MakeQueries<DS_BUFFER_PART_INFO_STACKED>(place);
    case Role::Length:
      // One that cannot be, where there is no list.
      return nothing ? 0 : noBuffer ? kUnsetSize : kEntrySizes.size();
  }
  return 0;
}

std::uint64_t ConsumerCall::Room(std::size_t place, std::size_t size) {
  std::uint8_t* room = memory_.Add(size);
  begins_[place] = static_cast<std::size_t>(room - memory_.Content().data());
  ends_[place] = begins_[place] + size;
  return reinterpret_cast<std::uintptr_t>(room);
}

std::uint64_t ConsumerCall::MakeEntries(std::size_t place) {
  const std::uint64_t entries = Room(place, kEntrySizes.size() * sizeof(PORT_REGISTER_STACK_ENTRY));
  for (std::size_t i = 0; i < kEntrySizes.size(); ++i) {
    const PORT_REGISTER_STACK_ENTRY entry = {ValueAt(i), memory_.Add(kEntrySizes[i]),
                                             kEntrySizes[i]};
    WriteTo(entries + i * sizeof entry, entry);
  }
  return entries;
}

std::uint64_t ConsumerCall::MakeNumbers(std::size_t place) {
  const std::uint64_t numbers = Room(place, kEntrySizes.size() * sizeof(std::uint64_t));
  for (std::size_t i = 0; i < kEntrySizes.size(); ++i) {
    WriteTo(numbers + i * sizeof(std::uint64_t), ValueAt(place) + i);
  }
  return numbers;
}

template <typename Query>
std::uint64_t ConsumerCall::MakeQueries(std::size_t place) {
  const std::uint64_t queries = Room(place, kEntrySizes.size() * sizeof(Query));
  for (std::size_t i = 0; i < kEntrySizes.size(); ++i) {
    Query query{};
    query.iInfoCmd = static_cast<std::int32_t>(i);
    query.iType = -1;
    query.pBuffer = memory_.Add(kEntrySizes[i]);
    query.iSize = kEntrySizes[i];
    query.iResult = -1;
    WriteTo(queries + i * sizeof query, query);
  }
  return queries;
}

void ConsumerCall::WriteAnswer(const Patterns& arguments, const Answer& answer) const {
  if (shape_ == Shape::Unanswered) {
    return;
  }
  for (std::size_t place = 0; place < kMaxArguments; ++place) {
    if (arguments[place] != 0) {
      Write(place, arguments[place], answer);
    }
  }
}

void ConsumerCall::Write(std::size_t place, std::uint64_t argument, const Answer& answer) const {
  switch (function_.roles[place]) {
    case Role::None:
    case Role::Value:
    case Role::Text:
    case Role::Data:
    case Role::EntriesWritten:
    case Role::Segments:
    case Role::Sizes:
    case Role::Length:
      break;
    case Role::Output:
    case Role::OptionalOutput: {
      const std::uint64_t value = ~ValueAt(place);
      std::memcpy(BytesAt(argument), &value, function_.pointeeSizes[place]);
      break;
    }
    case Role::Type:
    case Role::OptionalType:
      WriteTo(argument, answer.type);
      break;
    case Role::Buffer:
      if (shape_ == Shape::TooSmall) {
        std::memset(BytesAt(argument), '#', kTooSmallSize);
        break;
      }
      FillWithText(BytesAt(argument), kBufferSize, "target");
      if (answer.number) {
        WriteTo(argument, *answer.number);
      }
      break;
    case Role::Size:
    case Role::OptionalSize:
      // More than the consumer has room for, if it asked for the size or was too small.
      WriteTo<std::size_t>(argument, shape_ == Shape::Complete ? kBufferSize - 5 : kBufferSize + 5);
      break;
    case Role::EntriesRead:
      for (std::size_t i = 0; i < kEntrySizes.size(); ++i) {
        PORT_REGISTER_STACK_ENTRY entry{};
        std::memcpy(&entry, BytesAt(argument) + i * sizeof entry, sizeof entry);
        std::memset(entry.pBuffer, '0' + static_cast<int>(i), entry.Size);
      }
      break;
    case Role::Count:
    case Role::OptionalCount:
      // The log follows the entries as far as this says.
      WriteTo<std::size_t>(argument, arguments_[place - 1] == 0 ? 0 : 2);
      break;
    case Role::Chunks:
      std::memset(BytesAt(argument), '7', 2 * sizeof(SINGLE_CHUNK_DATA));
      break;
    case Role::Infos:
      AnswerQueries<DS_BUFFER_INFO_STACKED>(argument, answer);
      break;
    case Role::PartInfos:
      AnswerQueries<DS_BUFFER_PART_INFO_STACKED>(argument, answer);
      break;
  }
}

std::string ConsumerCall::NameOf(std::size_t offset) const {
  for (std::size_t place = 0; place < kMaxArguments; ++place) {
    if (offset >= begins_[place] && offset < ends_[place]) {
      return "argument " + std::to_string(place + 1) + ", byte " +
             std::to_string(offset - begins_[place]);
    }
  }
  return "between the arguments, byte " + std::to_string(offset);
}

}  // namespace vextrel_test
