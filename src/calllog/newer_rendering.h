// SPDX-License-Identifier: MIT
// The values of the newer functions' lines.
//
// Nothing is read that the consumer didn't offer or the target didn't deliver: a null pointer shows
// as "NULL", an answer is read as far as both the size that the consumer gave and the size that the
// target returned allow, and counts that can't be true are not followed. Nothing is changed.
// Thread-safe as long as nobody writes to the memory meanwhile.
#ifndef VEXTREL_CALLLOG_NEWER_RENDERING_H
#define VEXTREL_CALLLOG_NEWER_RENDERING_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "calllog/rendered_text.h"
#include "gentl/gentl_newer.h"

namespace vextrel {

// Of a list, so many entries are shown, followed by " (and NUMBER more)".
inline constexpr std::size_t kMostShown = 64;
// A list that claims more entries than this is taken for a mistake, and none is looked at.
inline constexpr std::size_t kMostBelieved = 4096;

// What an output points to.
[[nodiscard]] RenderedText RenderHandleAt(const void* const* output);
[[nodiscard]] RenderedText RenderNumberAt(const std::uint32_t* output);
[[nodiscard]] RenderedText RenderSizeAt(const std::size_t* output);
[[nodiscard]] RenderedText RenderTypeAt(const INFO_DATATYPE* output);

// What a size argument held before the call; 0 for a null pointer.
[[nodiscard]] std::size_t OfferedSize(const std::size_t* piSize) noexcept;

// An info value whole: at most `size` bytes at `pBuffer`, as `type` says. "NULL" if the value needs
// more bytes than that.
[[nodiscard]] std::string RenderWholeValue(INFO_DATATYPE type, const void* pBuffer,
                                           std::size_t size);

// The answer of an info query: "NULL" unless `result` is GC_ERR_SUCCESS and no pointer is null.
[[nodiscard]] std::string RenderAnswer(GC_ERROR result, const INFO_DATATYPE* piType,
                                       const void* pBuffer, std::size_t offered,
                                       const std::size_t* piSize);

// The same for a buffer part, whose data type shows by its name.
[[nodiscard]] std::string RenderPartAnswer(GC_ERROR result, BUFFER_PART_INFO_CMD command,
                                           const INFO_DATATYPE* piType, const void* pBuffer,
                                           std::size_t offered, const std::size_t* piSize);

// "Chunk[0]=(ChunkID=0x1, ChunkOffset=16, ChunkLength=8);" and so on; "NULL" without an answer.
[[nodiscard]] std::string RenderChunks(GC_ERROR result, const SINGLE_CHUNK_DATA* chunks,
                                       std::size_t offered, const std::size_t* piNumChunks);

// "Segment[0]=(pBuffer=0x..., iSize=4096);" and so on.
[[nodiscard]] std::string RenderSegments(const void* const* segments, const std::size_t* sizes,
                                         std::size_t count);

// Where a stacked query's answers may go: what the entries held before the call.
class OfferedBuffers {
 public:
  // REQUIRES: `infos` is null or points to `count` entries.
  OfferedBuffers(const DS_BUFFER_INFO_STACKED* infos, std::size_t count) noexcept;
  OfferedBuffers(const DS_BUFFER_PART_INFO_STACKED* infos, std::size_t count) noexcept;

  struct Buffer {
    const void* address;
    std::size_t size;
  };
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] const Buffer& operator[](std::size_t index) const noexcept {
    return buffers_[index];
  }

 private:
  template <typename Info>
  void Keep(const Info* infos, std::size_t count) noexcept;

  std::array<Buffer, kMostShown> buffers_;
  std::size_t size_ = 0;
};

// "Info[0]=(iCmd=BUFFER_INFO_WIDTH, iType=INFO_DATATYPE_SIZET, Buffer=640, iSize=8,
// iResult=GC_ERR_SUCCESS);" and so on.
[[nodiscard]] std::string RenderInfos(const DS_BUFFER_INFO_STACKED* infos, std::size_t count,
                                      const OfferedBuffers& offered);

// The same with iPartIndex in front, and "Order=iResult iType" or "Order=iType iResult" at the end:
// which of the two published orders of these fields the entry was taken to have. A result is never
// positive, a type never negative.
[[nodiscard]] std::string RenderPartInfos(const DS_BUFFER_PART_INFO_STACKED* infos,
                                          std::size_t count, const OfferedBuffers& offered);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_NEWER_RENDERING_H
