// SPDX-License-Identifier: MIT
// The stacked queries, chunks and segments of a target that answers anything, over memory of
// exactly the size that may be read, compared with a plain model.
#include "calllog/newer_rendering.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"
#include "exact_memory.h"
#include "model/newer_rendering.h"

namespace {

using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
using vextrel_test::model::Answer;
namespace model = vextrel_test::model;

// A query as the consumer makes it, and what the target leaves of it.
struct Query {
  std::int32_t command;
  std::uint32_t part;
  INFO_DATATYPE type;
  GC_ERROR result;
  void* offered;
  std::size_t offeredSize;
  void* left;
  std::size_t leftSize;
};

class Queries {
 public:
  explicit Queries(FuzzedDataProvider& data) {
    while (data.remaining_bytes() > 0 && queries_.size() < 70) {
      Add(data);
    }
  }
  [[nodiscard]] const std::vector<Query>& All() const { return queries_; }

 private:
  void Add(FuzzedDataProvider& data) {
    Query query{};
    query.command = data.ConsumeIntegralInRange(-1, 33);
    query.part = data.ConsumeIntegral<std::uint32_t>();
    query.type = data.ConsumeBool() ? data.ConsumeIntegralInRange<INFO_DATATYPE>(0, 15)
                                    : data.ConsumeIntegral<INFO_DATATYPE>();
    query.result = data.ConsumeBool() ? 0 : data.ConsumeIntegral<GC_ERROR>();
    if (data.ConsumeBool()) {
      const std::string bytes = data.ConsumeRandomLengthString(40);
      const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 15);
      query.offered = memory_.emplace_back(bytes, shift).data();
      query.offeredSize = bytes.size();
    } else {
      query.offeredSize = data.ConsumeIntegral<std::size_t>();
    }
    query.left = reinterpret_cast<void*>(data.ConsumeIntegral<std::uintptr_t>());
    query.leftSize = data.ConsumeBool() ? query.offeredSize : data.ConsumeIntegral<std::size_t>();
    queries_.push_back(query);
  }

  std::vector<Query> queries_;
  std::deque<ExactMemory> memory_;
};

// An entry's own type and result are those of the answer, or what the structure's order makes of
// them.
Answer AnswerOf(const Query& query) {
  return {query.type, query.result, query.offered, query.offeredSize, query.leftSize};
}

void CheckInfos(const std::vector<Query>& queries) {
  std::vector<DS_BUFFER_INFO_STACKED> infos;
  for (const Query& query : queries) {
    infos.push_back({query.command, -1, query.offered, query.offeredSize, -1});
  }
  const vextrel::OfferedBuffers offered(infos.data(), infos.size());
  std::string expected;
  for (std::size_t i = 0; i < infos.size(); ++i) {
    const Query& query = queries[i];
    infos[i] = {query.command, query.type, query.left, query.leftSize, query.result};
    expected += i < 64 ? model::RenderInfoEntry(i, query.command, AnswerOf(query)) : "";
  }
  expected += model::RenderRest(infos.size(), 64);
  CheckText(infos.empty() ? "" : vextrel::RenderInfos(infos.data(), infos.size(), offered),
            expected);
}

void CheckPartInfos(const std::vector<Query>& queries) {
  std::vector<DS_BUFFER_PART_INFO_STACKED> infos;
  for (const Query& query : queries) {
    infos.push_back({query.part, query.command, -1, -1, query.offered, query.offeredSize});
  }
  const vextrel::OfferedBuffers offered(infos.data(), infos.size());
  std::string expected;
  for (std::size_t i = 0; i < infos.size(); ++i) {
    const Query& query = queries[i];
    infos[i] = {query.part, query.command, query.result, query.type, query.left, query.leftSize};
    expected += i < 64 ? model::RenderPartInfoEntry(i, query.part, query.command, query.result,
                                                    query.type, AnswerOf(query))
                       : "";
  }
  expected += model::RenderRest(infos.size(), 64);
  CheckText(infos.empty() ? "" : vextrel::RenderPartInfos(infos.data(), infos.size(), offered),
            expected);
}

// `bytes` as whole descriptions of chunks, of which the target claims `claimed`.
void CheckChunks(std::string_view bytes, std::size_t claimed) {
  const std::size_t room = bytes.size() / sizeof(SINGLE_CHUNK_DATA);
  const ExactMemory memory(bytes.substr(0, room * sizeof(SINGLE_CHUNK_DATA)), 0);
  const auto* chunks = reinterpret_cast<const SINGLE_CHUNK_DATA*>(memory.data());
  CheckText(vextrel::RenderChunks(GC_ERR_SUCCESS, chunks, room, &claimed),
            model::RenderChunks({chunks, room}, claimed));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const std::string chunks = data.ConsumeRandomLengthString(400);
  const auto claimed = data.ConsumeBool() ? data.ConsumeIntegralInRange<std::size_t>(0, 80)
                                          : data.ConsumeIntegral<std::size_t>();
  CheckChunks(chunks, claimed);
  const Queries queries(data);
  CheckInfos(queries.All());
  CheckPartInfos(queries.All());
  return 0;
}
