// SPDX-License-Identifier: MIT
#include "model/newer_rendering.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "model/rendering.h"
#include "model/value_names.h"

namespace vextrel_test::model {
namespace {

template <typename... Values>
std::string Print(const char* format, Values... values) {
  std::string text(64, '\0');
  text.resize(static_cast<std::size_t>(
      std::snprintf(text.data(), text.size(), format, values...)));  // NOLINT
  return text;
}

template <typename Number, typename Shown>
std::string ShowNumber(const char* format, std::string_view bytes) {
  Number number{};
  if (bytes.size() < sizeof number) {
    return "NULL";
  }
  std::memcpy(&number, bytes.data(), sizeof number);
  return Print(format, static_cast<Shown>(number));
}

std::string Quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

std::string StringList(std::string_view bytes) {
  std::string shown;
  while (!bytes.empty() && bytes.front() != '\0') {
    const std::string_view entry = bytes.substr(0, bytes.find('\0'));
    shown += (shown.empty() ? "" : ",") + Quoted(entry);
    bytes.remove_prefix(std::min(bytes.size(), entry.size() + 1));
  }
  return shown;
}

std::string ValueOf(INFO_DATATYPE type, std::string_view bytes) {
  switch (type) {
    case INFO_DATATYPE_STRING:
      return Quoted(bytes.substr(0, bytes.find('\0')));
    case INFO_DATATYPE_STRINGLIST:
      return StringList(bytes);
    case INFO_DATATYPE_INT16:
      return ShowNumber<std::int16_t, int>("%d", bytes);
    case INFO_DATATYPE_UINT16:
      return ShowNumber<std::uint16_t, int>("%d", bytes);
    case INFO_DATATYPE_INT32:
      return ShowNumber<std::int32_t, std::int32_t>("%" PRId32, bytes);
    case INFO_DATATYPE_UINT32:
      return ShowNumber<std::uint32_t, std::uint32_t>("%" PRIu32, bytes);
    case INFO_DATATYPE_INT64:
    case INFO_DATATYPE_PTRDIFF:
      return ShowNumber<std::int64_t, std::int64_t>("%" PRId64, bytes);
    case INFO_DATATYPE_UINT64:
    case INFO_DATATYPE_SIZET:
      return ShowNumber<std::uint64_t, std::uint64_t>("%" PRIu64, bytes);
    case INFO_DATATYPE_PTR:
      return ShowNumber<std::uint64_t, std::uint64_t>("0x%016" PRIX64, bytes);
    case INFO_DATATYPE_BOOL8:
      return bytes.empty() ? "NULL" : bytes.front() == '\0' ? "0" : "1";
    case INFO_DATATYPE_FLOAT64:
      return bytes.size() < sizeof(double) ? "NULL"
                                           : RenderInfo(INFO_DATATYPE_FLOAT64, bytes.data());
    case INFO_DATATYPE_BUFFER:
      return RenderDump(bytes.data(), bytes.size());
    default:
      return ShowAddress(bytes.data());
  }
}

std::string Outcome(const Answer& answer, const std::string& value) {
  return ", iType=" + kNewerInfoDatatypes.NameOf(answer.type) + ", Buffer=" + value +
         ", iSize=" + std::to_string(answer.size) +
         ", iResult=" + kNewerGcErrors.NameOf(answer.result);
}

bool IsInteger(INFO_DATATYPE type) {
  return (type >= INFO_DATATYPE_INT16 && type <= INFO_DATATYPE_UINT64) ||
         type == INFO_DATATYPE_SIZET;
}

}  // namespace

std::string RenderAnswer(const Answer& answer) {
  if (answer.result != GC_ERR_SUCCESS || answer.buffer == nullptr) {
    return "NULL";
  }
  return ValueOf(answer.type, {static_cast<const char*>(answer.buffer),
                               std::min(answer.offeredSize, answer.size)});
}

std::string RenderPartAnswer(BUFFER_PART_INFO_CMD command, const Answer& answer) {
  std::string value = RenderAnswer(answer);
  if (command != BUFFER_PART_INFO_DATA_TYPE || !IsInteger(answer.type) || value == "NULL") {
    return value;
  }
  const long double number = std::stold(value);
  if (number >= INT32_MIN && number <= INT32_MAX) {
    return kPartDatatypes.NameOf(static_cast<std::int32_t>(number));
  }
  // The highest unsigned numbers are the lowest negative ones.
  const long double signedNumber = number - 18446744073709551616.0L;
  if (answer.type == INFO_DATATYPE_UINT32 || signedNumber < INT32_MIN || signedNumber >= 0) {
    return value;
  }
  return kPartDatatypes.NameOf(static_cast<std::int32_t>(signedNumber));
}

std::string RenderInfoEntry(std::size_t index, BUFFER_INFO_CMD command, const Answer& answer) {
  return "Info[" + std::to_string(index) + "]=(iCmd=" + kNewerBufferInfoCmds.NameOf(command) +
         Outcome(answer, RenderAnswer(answer)) + ");";
}

std::string RenderPartInfoEntry(std::size_t index, std::uint32_t part, BUFFER_PART_INFO_CMD command,
                                std::int32_t third, std::int32_t fourth, Answer answer) {
  // A result is never positive, and a type never negative.
  const bool mayBeResultFirst = third <= 0 && fourth >= 0;
  const bool mayBeTypeFirst = third >= 0 && fourth <= 0;
  const bool isTypeFirst = mayBeTypeFirst && !mayBeResultFirst;
  answer.type = isTypeFirst ? third : fourth;
  answer.result = isTypeFirst ? fourth : third;
  return "Info[" + std::to_string(index) + "]=(iPartIndex=" + std::to_string(part) +
         ", iCmd=" + kBufferPartInfoCmds.NameOf(command) +
         Outcome(answer, RenderPartAnswer(command, answer)) +
         (isTypeFirst ? ", Order=iType iResult);" : ", Order=iResult iType);");
}

std::string RenderChunks(std::span<const SINGLE_CHUNK_DATA> chunks, std::size_t claimed) {
  const std::size_t shown =
      claimed > 4096 ? 0 : std::min({chunks.size(), claimed, std::size_t{64}});
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    const std::string_view chunk(reinterpret_cast<const char*>(&chunks[i]), sizeof chunks[i]);
    text +=
        "Chunk[" + std::to_string(i) +
        "]=(ChunkID=" + ShowNumber<std::uint64_t, std::uint64_t>("0x%" PRIx64, chunk) +
        ", ChunkOffset=" + ShowNumber<std::int64_t, std::int64_t>("%" PRId64, chunk.substr(8)) +
        ", ChunkLength=" + ShowNumber<std::uint64_t, std::uint64_t>("%" PRIu64, chunk.substr(16)) +
        ");";
  }
  return text + RenderRest(claimed, shown);
}

std::string RenderRest(std::size_t count, std::size_t shown) {
  return count > shown ? " (and " + std::to_string(count - shown) + " more)" : "";
}

}  // namespace vextrel_test::model
