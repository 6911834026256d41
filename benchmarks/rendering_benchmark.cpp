// SPDX-License-Identifier: MIT
// The renderers alone, "render/...". The byte dump is compared with writing it through a stream and
// with filling a string of its size, which no way of writing can beat.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "benchmarks.h"
#include "calllog/byte_dump.h"
#include "calllog/info_rendering.h"
#include "calllog/line_format.h"
#include "calllog/port_rendering.h"
#include "calllog/value_names.h"

namespace vextrel_bench {
namespace {

using namespace vextrel;

std::vector<std::uint8_t> Data(std::size_t size) {
  std::vector<std::uint8_t> data(size);
  for (std::size_t i = 0; i < size; ++i) {
    data[i] = static_cast<std::uint8_t>(i * 7);
  }
  return data;
}

std::string StreamByteDump(const std::uint8_t* bytes, std::size_t size) {
  std::ostringstream text;
  for (std::size_t i = 0; i < size; ++i) {
    text << "0x" << std::hex << std::setw(2) << std::setfill('0')
         << static_cast<unsigned>(bytes[i]);
    if (i + 1 < size) {
      text << ",";
    }
    if (i % 16 == 15) {
      text << "\n";
    }
  }
  text << '\0';
  return text.str();
}

template <typename Make>
void Add(const char* name, Make make) {
  benchmark::RegisterBenchmark(name, [make](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(make());
    }
  })->UseRealTime();
}

void AddDump(const std::string& size, std::size_t bytes) {
  const auto data = Data(bytes);
  const std::size_t textSize = RenderByteDump(data.data(), bytes).view().size();
  Add(("render/ByteDump/" + size).c_str(),
      [data, bytes] { return RenderByteDump(data.data(), bytes).view().back(); });
  Add(("render/ByteDump/" + size + "/stream").c_str(),
      [data, bytes] { return StreamByteDump(data.data(), bytes); });
  Add(("render/ByteDump/" + size + "/fill").c_str(),
      [textSize] { return std::string(textSize, 'x'); });
}

}  // namespace

void RegisterRenderingBenchmarks() {
  AddDump("8", 8);
  AddDump("4KiB", 4096);
  AddDump("1MiB", std::size_t{1} << 20);
  Add("render/GcErrorName", [] { return GcErrorName(GC_ERR_SUCCESS).c_str()[0]; });
  Add("render/BufferInfoCmdName", [] { return BufferInfoCmdName(BUFFER_INFO_BASE).c_str()[0]; });
  const std::size_t number = 307200;
  Add("render/InfoValue/SIZET",
      [number] { return RenderInfoValue(INFO_DATATYPE_SIZET, &number, sizeof number).c_str()[0]; });
  Add("render/InfoValue/PTR",
      [number] { return RenderInfoValue(INFO_DATATYPE_PTR, &number, sizeof number).c_str()[0]; });
  Add("render/InfoValue/STRING",
      [] { return RenderInfoValue(INFO_DATATYPE_STRING, "Mono8", 6).c_str()[0]; });
  Add("render/Line", [number] {
    return FormatLine("%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)", GcErrorName(GC_ERR_SUCCESS), &number,
                      &number);
  });
}

}  // namespace vextrel_bench
