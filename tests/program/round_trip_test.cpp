// SPDX-License-Identifier: MIT
// Every line that the module can write, with random values, written by the module's own formatter
// and read back by the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "calllog/byte_dump.h"
#include "calllog/format_value.h"
#include "calllog/line_format.h"
#include "calllog/log_text.h"
#include "calllog/newer_rendering.h"
#include "calllog/newer_value_names.h"
#include "calllog/value_names.h"
#include "reading/entries.h"
#include "reading/line_shapes.h"
#include "reading/message.h"
#include "reading/value_reading.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;
using vextrel::Conversion;
using vextrel::FormatPiece;
using vextrel::FormatValue;

constexpr int kRounds = 300;

// Values of one line. They live as long as the line is made.
class RandomValues {
 public:
  explicit RandomValues(unsigned seed) : random_(seed) {}

  std::uint64_t Number() {
    // All sizes come equally often, and so do the ends.
    const unsigned bits = static_cast<unsigned>(random_() % 65);
    const std::uint64_t number = random_();
    return bits == 0 ? 0 : number >> (64U - bits);
  }

  std::string Text() {
    static constexpr std::string_view letters = "ab 0x(),=->'\n\"%\xFF\x01";
    std::string text(random_() % 40, ' ');
    for (char& each : text) {
      each = letters[random_() % letters.size()];
    }
    return text;
  }

  std::vector<std::uint8_t> Bytes() {
    std::vector<std::uint8_t> bytes(random_() % 70);
    for (std::uint8_t& each : bytes) {
      // Commas, digits and zeros, too.
      each = static_cast<std::uint8_t>(random_() % 3 == 0 ? random_() % 0x40 : random_());
    }
    return bytes;
  }

  std::string Result() {
    const auto value =
        static_cast<GC_ERROR>(random_() % 2 == 0 ? -1000 - static_cast<int>(random_() % 30)
                                                 : static_cast<std::int32_t>(Number()));
    return Shown(vextrel::GcErrorName(value));
  }

  std::string_view Function() { return FunctionNames()[random_() % FunctionNames().size()]; }

  std::string Name(const vextrel::ValueTable& table) {
    const std::size_t at = random_() % (table.run.size() + 2);
    if (at < table.run.size()) {
      return std::string(table.run[at]);
    }
    return at == table.run.size() && !table.custom.empty()
               ? std::string(table.custom)
               : std::string(table.unknown) + std::to_string(static_cast<std::int32_t>(Number())) +
                     ")";
  }

 private:
  static std::string Shown(const vextrel::RenderedText& text) { return std::string(text.Shown()); }

  std::mt19937_64 random_;
};

// Divides the format as the reader does not: at run time.
std::vector<FormatPiece> Pieces(std::string_view text) {
  struct Known {
    std::string_view text;
    Conversion conversion;
  };
  static constexpr Known known[] = {
      {"%llx", Conversion::Hex64},      {"%lu", Conversion::Unsigned32},
      {"%llu", Conversion::Unsigned64}, {"%s", Conversion::Text},
      {"%p", Conversion::Pointer},      {"%u", Conversion::Unsigned32},
      {"%d", Conversion::Signed32},     {"%x", Conversion::Hex32}};
  std::vector<FormatPiece> pieces;
  std::size_t literal = 0;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at)) {
    for (const Known& each : known) {
      if (text.substr(at).starts_with(each.text)) {
        pieces.push_back({static_cast<std::uint16_t>(at - literal),
                          static_cast<std::uint16_t>(each.text.size()), each.conversion});
        at += each.text.size();
        literal = at;
        break;
      }
    }
  }
  return pieces;
}

struct Expected {
  std::string text;
  std::uint64_t number = 0;
};

// A value for each piece, and what it has to be read back as.
struct WrittenLine {
  std::string line;
  std::vector<Expected> expected;  // of the places, a call's result not among them
  std::string result;
};

std::uint64_t AsRead(Conversion conversion, std::uint64_t number) {
  switch (conversion) {
    case Conversion::Unsigned32:
    case Conversion::Hex32:
      return static_cast<std::uint32_t>(number);
    case Conversion::Signed32:
      return static_cast<std::uint64_t>(
          static_cast<std::int64_t>(static_cast<std::int32_t>(number)));
    default:
      return number;
  }
}

// What the writer's own functions make of a value that stands under %s.
std::string WordOf(const Place& place, RandomValues& random, Expected& expected) {
  const std::uint64_t number = random.Number();
  if (place.meaning == Meaning::Duration) {
    expected.number = number;
    char text[32];
    std::snprintf(text, sizeof text, "%llu.%03u", static_cast<unsigned long long>(number / 1000),
                  static_cast<unsigned>(number % 1000));
    return text;
  }
  // A null output.
  if (number % 8 == 0) {
    return "NULL";
  }
  expected.number = number;
  if (place.meaning == Meaning::Handle) {
    const void* const handle = reinterpret_cast<const void*>(number);
    return std::string(vextrel::RenderHandleAt(&handle).Shown());
  }
  return std::string(vextrel::RenderSizeAt(&number).Shown());
}

WrittenLine Write(const LineShape& shape, bool isCall, RandomValues& random) {
  WrittenLine written;
  const std::vector<FormatPiece> pieces = Pieces(shape.text);
  const std::size_t first = isCall ? 1 : 0;
  // Their memory must not move.
  std::vector<std::string> texts(pieces.size());
  std::vector<std::uint8_t> bytes;
  std::vector<FormatValue> values;
  if (isCall) {
    texts[0] = written.result = random.Result();
    values.emplace_back(texts[0]);
  }
  const bool isReadPort = shape.function == "GCReadPort";
  if (isReadPort) {
    bytes = random.Bytes();
  }
  for (std::size_t i = first; i < pieces.size(); ++i) {
    const Place& place = shape.places[i - first];
    Expected expected;
    if (pieces[i].conversion != Conversion::Text) {
      expected.number = random.Number();
      if (isReadPort && place.label == "iSize") {
        expected.number = bytes.size();
      }
      values.emplace_back(expected.number);
      expected.number = AsRead(pieces[i].conversion, expected.number);
      written.expected.push_back(expected);
      continue;
    }
    if (isReadPort && place.meaning != Meaning::Dump) {
      // The same bytes as text, up to the first zero.
      texts[i].assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
      texts[i] = texts[i].substr(0, texts[i].find('\0'));
    } else if (place.meaning == Meaning::Dump) {
      if (!isReadPort) {
        bytes = random.Bytes();
      }
      vextrel::ByteDump{bytes.data(), bytes.size()}.AppendTo(expected.text);
      values.emplace_back(vextrel::ByteDump{bytes.data(), bytes.size()});
      written.expected.push_back(expected);
      continue;
    } else if (place.meaning == Meaning::Name) {
      texts[i] =
          place.values == nullptr ? std::string(random.Function()) : random.Name(*place.values);
    } else if (place.conversion == Conversion::Text && !IsFreeText(place)) {
      texts[i] = WordOf(place, random, expected);
    } else if (shape.text.starts_with("%s not exported")) {
      texts[i] = "GEventGetData";
    } else {
      texts[i] = random.Text();
    }
    expected.text = texts[i];
    values.emplace_back(texts[i]);
    written.expected.push_back(expected);
  }
  written.line = vextrel::FormatLine(shape.text, pieces, values);
  return written;
}

void ReadBack(const LineShape& shape, bool isCall, const WrittenLine& written) {
  Message message;
  ParseMessage(written.line, message);
  if (!message.IsTiming()) {
    ASSERT_EQ(message.kind, isCall ? MessageKind::Call : MessageKind::Report) << written.line;
  }
  ASSERT_EQ(message.shape, &shape) << written.line;
  if (isCall) {
    GC_ERROR result = 0;
    ASSERT_TRUE(ReadResult(written.result, result));
    EXPECT_EQ(message.result, result);
  }
  ASSERT_EQ(written.expected.size(), shape.places.size());
  for (std::size_t i = 0; i < shape.places.size(); ++i) {
    const Place& place = shape.places[i];
    if (place.conversion == Conversion::Text && place.meaning != Meaning::Handle) {
      EXPECT_EQ(message.values[i].text, written.expected[i].text) << i << ": " << written.line;
    }
    const bool isNumber = place.conversion != Conversion::Text ||
                          (place.meaning != Meaning::Name && !IsFreeText(place));
    if (isNumber && place.meaning != Meaning::Address) {
      EXPECT_EQ(message.values[i].number, written.expected[i].number) << i << ": " << written.line;
    }
  }
}

TEST(RoundTrip, ReadsEveryCallAsItWasWritten) {
  RandomValues random(20'261'121);
  for (const LineShape& shape : CallShapes()) {
    for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
      ReadBack(shape, true, Write(shape, true, random));
    }
  }
}

TEST(RoundTrip, ReadsEveryReportAsItWasWritten) {
  RandomValues random(4711);
  for (const LineShape& shape : ReportShapes()) {
    for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
      ReadBack(shape, false, Write(shape, false, random));
    }
  }
}

TEST(RoundTrip, ReadsEveryTimingLineAsItWasWritten) {
  RandomValues random(815);
  for (const LineShape& shape : TimingShapes()) {
    for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
      ReadBack(shape, false, Write(shape, false, random));
    }
  }
}

std::string Shown(const vextrel::RenderedText& text) {
  return std::string(text.Shown());
}

// They refer to the text.
std::vector<Entry> EntriesOf(const std::string& text, std::size_t more = 0) {
  Entries entries;
  EXPECT_TRUE(ReadEntries(text, entries)) << text;
  EXPECT_EQ(entries.more, more);
  return entries.shown;
}

TEST(RoundTrip, ReadsChunksAndSegmentsAsTheyWereWritten) {
  RandomValues random(1984);
  for (std::size_t count = 1; count < 80; ++count) {
    std::vector<SINGLE_CHUNK_DATA> chunks(count);
    std::vector<const void*> segments(count);
    std::vector<std::size_t> sizes(count);
    for (std::size_t i = 0; i < count; ++i) {
      chunks[i] = {random.Number(), static_cast<std::ptrdiff_t>(random.Number()),
                   static_cast<std::size_t>(random.Number())};
      segments[i] = reinterpret_cast<const void*>(random.Number());
      sizes[i] = static_cast<std::size_t>(random.Number());
    }
    const std::size_t shown = std::min<std::size_t>(count, vextrel::kMostShown);
    const std::string chunkText =
        vextrel::RenderChunks(GC_ERR_SUCCESS, chunks.data(), count, &count);
    const std::string segmentText = vextrel::RenderSegments(segments.data(), sizes.data(), count);
    const auto readChunks = EntriesOf(chunkText, count - shown);
    const auto readSegments = EntriesOf(segmentText, count - shown);
    ASSERT_EQ(readChunks.size(), shown);
    ASSERT_EQ(readSegments.size(), shown);
    for (std::size_t i = 0; i < shown; ++i) {
      const SINGLE_CHUNK_DATA chunk = chunks[i];
      EXPECT_EQ(std::stoull(std::string(readChunks[i].Find("ChunkID")), nullptr, 16),
                std::uint64_t{chunk.ChunkID});
      EXPECT_EQ(readChunks[i].Find("ChunkOffset"),
                std::to_string(std::ptrdiff_t{chunk.ChunkOffset}));
      EXPECT_EQ(readChunks[i].Find("ChunkLength"), std::to_string(std::size_t{chunk.ChunkLength}));
      EXPECT_EQ(readSegments[i].Find("pBuffer"), Shown(vextrel::RenderHandleAt(&segments[i])));
      EXPECT_EQ(readSegments[i].Find("iSize"), std::to_string(sizes[i]));
    }
  }
}

TEST(RoundTrip, ReadsStackedQueriesAsTheyWereWritten) {
  RandomValues random(77);
  for (std::size_t count = 1; count < 40; ++count) {
    std::vector<std::string> texts(count);
    std::vector<DS_BUFFER_INFO_STACKED> infos(count);
    std::vector<DS_BUFFER_PART_INFO_STACKED> parts(count);
    for (std::size_t i = 0; i < count; ++i) {
      texts[i] = random.Text();
      const auto command = static_cast<std::int32_t>(random.Number() % 40);
      const GC_ERROR result = i % 3 == 0 ? -1000 - static_cast<GC_ERROR>(random.Number() % 30) : 0;
      infos[i] = {command, INFO_DATATYPE_STRING, texts[i].data(), texts[i].size(), result};
      parts[i] = {static_cast<std::uint32_t>(i), command,         result,
                  INFO_DATATYPE_STRING,          texts[i].data(), texts[i].size()};
    }
    const std::string infoText =
        vextrel::RenderInfos(infos.data(), count, vextrel::OfferedBuffers(infos.data(), count));
    const std::string partText =
        vextrel::RenderPartInfos(parts.data(), count, vextrel::OfferedBuffers(parts.data(), count));
    const auto readInfos = EntriesOf(infoText);
    const auto readParts = EntriesOf(partText);
    ASSERT_EQ(readInfos.size(), count);
    ASSERT_EQ(readParts.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
      const DS_BUFFER_INFO_STACKED info = infos[i];
      const std::string quoted = "'" + texts[i] + "'";
      const bool isText = info.iResult == GC_ERR_SUCCESS;
      EXPECT_EQ(readInfos[i].Find("iCmd"), Shown(vextrel::NewerBufferInfoCmdName(info.iInfoCmd)));
      EXPECT_EQ(readInfos[i].Find("Buffer"), isText ? quoted : "NULL");
      EXPECT_EQ(readInfos[i].Find("iSize"), std::to_string(texts[i].size()));
      GC_ERROR result = 1;
      EXPECT_TRUE(ReadResult(readInfos[i].Find("iResult"), result));
      EXPECT_EQ(result, GC_ERROR{info.iResult});
      EXPECT_EQ(readParts[i].Find("iPartIndex"), std::to_string(i));
      EXPECT_EQ(readParts[i].Find("iCmd"), Shown(vextrel::BufferPartInfoCmdName(info.iInfoCmd)));
      EXPECT_EQ(readParts[i].Find("Order"), "iResult iType");
    }
  }
}

}  // namespace
}  // namespace vextrel_test
