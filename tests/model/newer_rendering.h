// SPDX-License-Identifier: MIT
// How the lines of the newer functions show values that lie in memory.
#ifndef VEXTREL_TESTS_MODEL_NEWER_RENDERING_H
#define VEXTREL_TESTS_MODEL_NEWER_RENDERING_H

#include <cstddef>
#include <span>
#include <string>

#include "gentl/gentl_newer.h"

namespace vextrel_test::model {

// An answer as a whole: what the consumer offered, and what the target made of it.
struct Answer {
  INFO_DATATYPE type;
  GC_ERROR result;
  const void* buffer;  // as offered
  std::size_t offeredSize;
  std::size_t size;  // as returned
};

[[nodiscard]] std::string RenderAnswer(const Answer& answer);
// The same for a buffer part, whose data type has a name.
[[nodiscard]] std::string RenderPartAnswer(BUFFER_PART_INFO_CMD command, const Answer& answer);

// One entry of a stacked query, with its number.
[[nodiscard]] std::string RenderInfoEntry(std::size_t index, BUFFER_INFO_CMD command,
                                          const Answer& answer);
// `third` and `fourth` are the fields that two versions of the structure have in different order.
// The type and the result of `answer` don't count.
[[nodiscard]] std::string RenderPartInfoEntry(std::size_t index, std::uint32_t part,
                                              BUFFER_PART_INFO_CMD command, std::int32_t third,
                                              std::int32_t fourth, Answer answer);

// Chunks of which the target claims `claimed`, and the consumer offered room for all of `chunks`.
[[nodiscard]] std::string RenderChunks(std::span<const SINGLE_CHUNK_DATA> chunks,
                                       std::size_t claimed);

// What follows a list of which only the first `shown` entries are shown.
[[nodiscard]] std::string RenderRest(std::size_t count, std::size_t shown);

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_NEWER_RENDERING_H
