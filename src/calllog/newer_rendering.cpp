// SPDX-License-Identifier: MIT
#include "calllog/newer_rendering.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "calllog/byte_dump.h"
#include "calllog/digits.h"
#include "calllog/newer_value_names.h"

namespace vextrel {
namespace {

constexpr std::string_view kNull = "NULL";

// The value at the start of the buffer, or nothing if the buffer is too small for it.
template <typename Value>
std::optional<Value> ReadValue(const void* pBuffer, std::size_t size) {
  Value value;
  if (size < sizeof value) {
    return std::nullopt;
  }
  std::memcpy(&value, pBuffer, sizeof value);
  return value;
}

template <typename Number>
std::string RenderNumber(const void* pBuffer, std::size_t size) {
  const auto value = ReadValue<Number>(pBuffer, size);
  return std::string(value ? Digits::Decimal(*value).view() : kNull);
}

std::string_view TextIn(const char* text, std::size_t size) {
  return {text, static_cast<std::size_t>(std::find(text, text + size, '\0') - text)};
}

void AppendQuoted(std::string& text, std::string_view quoted) {
  text.append("'").append(quoted).append("'");
}

// Texts one behind the other, each with its zero byte, and a zero byte behind the last.
std::string RenderStringList(std::string_view list) {
  std::string text;
  while (!list.empty() && list.front() != '\0') {
    const std::string_view entry = TextIn(list.data(), list.size());
    if (!text.empty()) {
      text.push_back(',');
    }
    AppendQuoted(text, entry);
    list.remove_prefix(std::min(list.size(), entry.size() + 1));
  }
  return text;
}

// A number of whatever integer type, or nothing.
std::optional<std::int64_t> ReadInteger(INFO_DATATYPE type, const void* pBuffer, std::size_t size) {
  const auto read = [&]<typename Number>(Number /*kind*/) -> std::optional<std::int64_t> {
    const auto value = ReadValue<Number>(pBuffer, size);
    return value ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt;
  };
  switch (type) {
    case INFO_DATATYPE_INT16:
      return read(std::int16_t{});
    case INFO_DATATYPE_UINT16:
      return read(std::uint16_t{});
    case INFO_DATATYPE_INT32:
      return read(std::int32_t{});
    case INFO_DATATYPE_UINT32:
      return read(std::uint32_t{});
    case INFO_DATATYPE_INT64:
    case INFO_DATATYPE_UINT64:
    case INFO_DATATYPE_SIZET:
      return read(std::int64_t{});
    default:
      return std::nullopt;
  }
}

std::string RenderPartValue(BUFFER_PART_INFO_CMD command, INFO_DATATYPE type, const void* pBuffer,
                            std::size_t size) {
  if (command == BUFFER_PART_INFO_DATA_TYPE && pBuffer != nullptr) {
    const auto number = ReadInteger(type, pBuffer, size);
    if (number && *number == static_cast<PARTDATATYPE_ID>(*number)) {
      return std::string(PartDatatypeName(static_cast<PARTDATATYPE_ID>(*number)).Shown());
    }
  }
  return RenderWholeValue(type, pBuffer, size);
}

// Calls append(text, index) for the entries that are shown.
template <typename Append>
std::string RenderList(std::size_t count, std::size_t shown, Append append) {
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    append(text, i);
  }
  if (count > shown) {
    text.append(" (and ").append(Digits::Decimal(count - shown).view()).append(" more)");
  }
  return text;
}

void AppendIndex(std::string& text, std::string_view kind, std::size_t index) {
  text.append(kind).append("[").append(Digits::Decimal(index).view()).append("]=(");
}

// What both kinds of stacked entries show behind their command.
void AppendOutcome(std::string& text, INFO_DATATYPE type, std::string_view value, std::size_t size,
                   GC_ERROR result) {
  text.append(", iType=").append(NewerInfoDatatypeName(type).Shown());
  text.append(", Buffer=").append(value);
  text.append(", iSize=").append(Digits::Decimal(size).view());
  text.append(", iResult=").append(NewerGcErrorName(result).Shown());
}

}  // namespace

RenderedText RenderHandleAt(const void* const* output) {
  if (output == nullptr) {
    return RenderedText::Name(kNull);
  }
  return RenderedText::Number([output](char* text) { return WriteAddress(*output, text); });
}

RenderedText RenderNumberAt(const std::uint32_t* output) {
  if (output == nullptr) {
    return RenderedText::Name(kNull);
  }
  return RenderedText::Number([output](char* text) { return WriteDecimal(*output, text); });
}

RenderedText RenderSizeAt(const std::size_t* output) {
  if (output == nullptr) {
    return RenderedText::Name(kNull);
  }
  return RenderedText::Number([output](char* text) { return WriteDecimal(*output, text); });
}

RenderedText RenderTypeAt(const INFO_DATATYPE* output) {
  return output == nullptr ? RenderedText::Name(kNull) : NewerInfoDatatypeName(*output);
}

std::size_t OfferedSize(const std::size_t* piSize) noexcept {
  return piSize == nullptr ? 0 : *piSize;
}

std::string RenderWholeValue(INFO_DATATYPE type, const void* pBuffer, std::size_t size) {
  if (pBuffer == nullptr) {
    return std::string(kNull);
  }
  switch (type) {
    case INFO_DATATYPE_STRING: {
      std::string text;
      AppendQuoted(text, TextIn(static_cast<const char*>(pBuffer), size));
      return text;
    }
    case INFO_DATATYPE_STRINGLIST:
      return RenderStringList({static_cast<const char*>(pBuffer), size});
    case INFO_DATATYPE_INT16:
      return RenderNumber<std::int16_t>(pBuffer, size);
    case INFO_DATATYPE_UINT16:
      return RenderNumber<std::uint16_t>(pBuffer, size);
    case INFO_DATATYPE_INT32:
      return RenderNumber<std::int32_t>(pBuffer, size);
    case INFO_DATATYPE_UINT32:
      return RenderNumber<std::uint32_t>(pBuffer, size);
    case INFO_DATATYPE_INT64:
    case INFO_DATATYPE_PTRDIFF:
      return RenderNumber<std::int64_t>(pBuffer, size);
    case INFO_DATATYPE_UINT64:
    case INFO_DATATYPE_SIZET:
      return RenderNumber<std::uint64_t>(pBuffer, size);
    case INFO_DATATYPE_FLOAT64: {
      const auto value = ReadValue<double>(pBuffer, size);
      return std::string(value ? Digits::General(*value).view() : kNull);
    }
    case INFO_DATATYPE_PTR: {
      const auto value = ReadValue<const void*>(pBuffer, size);
      return std::string(value ? Digits::Address(*value).view() : kNull);
    }
    case INFO_DATATYPE_BOOL8: {
      const auto value = ReadValue<std::uint8_t>(pBuffer, size);
      return std::string(value ? (*value != 0 ? "1" : "0") : kNull);
    }
    case INFO_DATATYPE_BUFFER: {
      std::string text;
      ByteDump{pBuffer, size}.AppendTo(text);
      return text;
    }
    default:
      return std::string(Digits::Address(pBuffer).view());
  }
}

std::string RenderAnswer(GC_ERROR result, const INFO_DATATYPE* piType, const void* pBuffer,
                         std::size_t offered, const std::size_t* piSize) {
  if (result != GC_ERR_SUCCESS || piType == nullptr || pBuffer == nullptr || piSize == nullptr) {
    return std::string(kNull);
  }
  return RenderWholeValue(*piType, pBuffer, std::min(offered, *piSize));
}

std::string RenderPartAnswer(GC_ERROR result, BUFFER_PART_INFO_CMD command,
                             const INFO_DATATYPE* piType, const void* pBuffer, std::size_t offered,
                             const std::size_t* piSize) {
  if (result != GC_ERR_SUCCESS || piType == nullptr || pBuffer == nullptr || piSize == nullptr) {
    return std::string(kNull);
  }
  return RenderPartValue(command, *piType, pBuffer, std::min(offered, *piSize));
}

std::string RenderChunks(GC_ERROR result, const SINGLE_CHUNK_DATA* chunks, std::size_t offered,
                         const std::size_t* piNumChunks) {
  if (result != GC_ERR_SUCCESS || chunks == nullptr || piNumChunks == nullptr) {
    return std::string(kNull);
  }
  const std::size_t count = *piNumChunks;
  const std::size_t shown = count > kMostBelieved ? 0 : std::min({offered, count, kMostShown});
  return RenderList(count, shown, [&](std::string& text, std::size_t i) {
    SINGLE_CHUNK_DATA chunk;
    std::memcpy(&chunk, chunks + i, sizeof chunk);
    AppendIndex(text, "Chunk", i);
    text.append("ChunkID=0x").append(Digits::Hex(chunk.ChunkID).view());
    text.append(", ChunkOffset=").append(Digits::Decimal(chunk.ChunkOffset).view());
    text.append(", ChunkLength=").append(Digits::Decimal(chunk.ChunkLength).view());
    text.append(");");
  });
}

std::string RenderSegments(const void* const* segments, const std::size_t* sizes,
                           std::size_t count) {
  if (segments == nullptr || sizes == nullptr) {
    return std::string(kNull);
  }
  const std::size_t shown = count > kMostBelieved ? 0 : std::min(count, kMostShown);
  return RenderList(count, shown, [&](std::string& text, std::size_t i) {
    AppendIndex(text, "Segment", i);
    text.append("pBuffer=").append(Digits::Address(segments[i]).view());
    text.append(", iSize=").append(Digits::Decimal(sizes[i]).view());
    text.append(");");
  });
}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): clearing buffers_ would cost every call.
OfferedBuffers::OfferedBuffers(const DS_BUFFER_INFO_STACKED* infos, std::size_t count) noexcept {
  Keep(infos, count);
}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): see above.
OfferedBuffers::OfferedBuffers(const DS_BUFFER_PART_INFO_STACKED* infos,
                               std::size_t count) noexcept {
  Keep(infos, count);
}

template <typename Info>
void OfferedBuffers::Keep(const Info* infos, std::size_t count) noexcept {
  if (infos == nullptr || count > kMostBelieved) {
    return;
  }
  size_ = std::min(count, kMostShown);
  for (std::size_t i = 0; i < size_; ++i) {
    buffers_[i] = {infos[i].pBuffer, infos[i].iSize};
  }
}

std::string RenderInfos(const DS_BUFFER_INFO_STACKED* infos, std::size_t count,
                        const OfferedBuffers& offered) {
  if (infos == nullptr) {
    return std::string(kNull);
  }
  return RenderList(count, offered.size(), [&](std::string& text, std::size_t i) {
    DS_BUFFER_INFO_STACKED info;
    std::memcpy(&info, infos + i, sizeof info);
    const std::string value =
        info.iResult != GC_ERR_SUCCESS
            ? std::string(kNull)
            : RenderWholeValue(info.iType, offered[i].address,
                               std::min(offered[i].size, std::size_t{info.iSize}));
    AppendIndex(text, "Info", i);
    text.append("iCmd=").append(NewerBufferInfoCmdName(info.iInfoCmd).Shown());
    AppendOutcome(text, info.iType, value, info.iSize, info.iResult);
    text.append(");");
  });
}

std::string RenderPartInfos(const DS_BUFFER_PART_INFO_STACKED* infos, std::size_t count,
                            const OfferedBuffers& offered) {
  if (infos == nullptr) {
    return std::string(kNull);
  }
  return RenderList(count, offered.size(), [&](std::string& text, std::size_t i) {
    DS_BUFFER_PART_INFO_STACKED info;
    std::memcpy(&info, infos + i, sizeof info);
    const bool isTypeFirst =
        (info.iResult > 0 && info.iType <= 0) || (info.iResult == 0 && info.iType < 0);
    const GC_ERROR result = isTypeFirst ? info.iType : info.iResult;
    const INFO_DATATYPE type = isTypeFirst ? info.iResult : info.iType;
    const std::string value =
        result != GC_ERR_SUCCESS
            ? std::string(kNull)
            : RenderPartValue(info.iInfoCmd, type, offered[i].address,
                              std::min(offered[i].size, std::size_t{info.iSize}));
    AppendIndex(text, "Info", i);
    text.append("iPartIndex=").append(Digits::Decimal(info.iPartIndex).view());
    text.append(", iCmd=").append(BufferPartInfoCmdName(info.iInfoCmd).Shown());
    AppendOutcome(text, type, value, info.iSize, result);
    text.append(isTypeFirst ? ", Order=iType iResult);" : ", Order=iResult iType);");
  });
}

}  // namespace vextrel
