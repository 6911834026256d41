// SPDX-License-Identifier: MIT
#include "reading/record_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;
using testing::ElementsAre;
using testing::HasSubstr;

struct Seen {
  RecordKind kind;
  std::uint64_t line;
  std::string message;
  bool operator==(const Seen&) const = default;
};

std::vector<Seen> ReadAll(std::vector<std::string> files, std::optional<Layout> layout = {}) {
  ReadingOptions options;
  options.files = std::move(files);
  options.layout = std::move(layout);
  RecordReader reader(std::move(options));
  std::vector<Seen> seen;
  Record record;
  while (reader.Next(record)) {
    seen.push_back({record.kind, record.place.line, std::string(record.message)});
  }
  return seen;
}

std::string Refusal(const std::string& path) {
  try {
    static_cast<void>(ReadAll({path}));
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing was refused";
}

constexpr std::string_view kInit = "GC_ERR_SUCCESS=GCInitLib(void)";
constexpr std::string_view kClose = "GC_ERR_SUCCESS=GCCloseLib(void)";

TEST(RecordReader, JoinsTheLinesOfARecord) {
  const ScratchFile log(LogLine(0, "a\nb\n\nc") + LogLine(1, kInit));
  EXPECT_THAT(ReadAll({log.Path()}), ElementsAre(Seen{RecordKind::Whole, 1, "a\nb\n\nc"},
                                                 Seen{RecordKind::Whole, 5, std::string(kInit)}));
}

TEST(RecordReader, TakesWindowsLineBreaksAndAByteOrderMark) {
  std::string text = "\xEF\xBB\xBF" + LogLine(0, kInit) + LogLine(1, kClose);
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) {
    text.insert(at, "\r");
  }
  const ScratchFile log(text);
  EXPECT_THAT(ReadAll({log.Path()}), ElementsAre(Seen{RecordKind::Whole, 1, std::string(kInit)},
                                                 Seen{RecordKind::Whole, 2, std::string(kClose)}));
}

TEST(RecordReader, KeepsTheRestOfACutFirstRecordAndACutLastOne) {
  const ScratchFile log("0x01,0x02,\n0x03)\n" + LogLine(0, kInit) +
                        "2026-11-21 12:00:00.001 [7] INFO  GC_ERR");
  EXPECT_THAT(ReadAll({log.Path()}), ElementsAre(Seen{RecordKind::Headless, 1, "0x01,0x02,\n0x03)"},
                                                 Seen{RecordKind::Whole, 3, std::string(kInit)},
                                                 Seen{RecordKind::Whole, 4, "GC_ERR"}));
}

TEST(RecordReader, ReadsSeveralFilesAsOneLog) {
  const ScratchFile log(LogLine(0, kInit));
  const std::string second = log.Beside(LogLine(5, kClose), "second.log");
  ReadingOptions options;
  options.files = {log.Path(), second};
  RecordReader reader(std::move(options));
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.place.file, 0U);
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.place.file, 1U);
  EXPECT_EQ(record.place.line, 1U);
  EXPECT_FALSE(reader.Next(record));
  EXPECT_EQ(reader.Lines(), 2U);
  EXPECT_EQ(reader.BytesRead(), LogLine(0, kInit).size() + LogLine(5, kClose).size());
}

TEST(RecordReader, DividesMessagesThatAreGluedTogether) {
  const ScratchFile log(std::string(kInit) + "Loading GenTL Producer 'x'" + std::string(kClose) +
                        "TLOpen not exported");
  EXPECT_THAT(ReadAll({log.Path()}),
              ElementsAre(Seen{RecordKind::Whole, 1, std::string(kInit)},
                          Seen{RecordKind::Whole, 1, "Loading GenTL Producer 'x'"},
                          Seen{RecordKind::Whole, 1, std::string(kClose)},
                          Seen{RecordKind::Whole, 1, "TLOpen not exported"}));
}

TEST(RecordReader, ReadsRecordsThatCrossItsBlocks) {
  // Records of every size around the reader's block of 1 MiB.
  std::string text;
  std::vector<std::size_t> sizes;
  for (std::size_t i = 0; i < 40; ++i) {
    const std::size_t size = i % 4 == 0 ? 1'048'570 + i : 100'000 + i * 7;
    sizes.push_back(size);
    text += LogLine(static_cast<int>(i), std::string(size, 'x'));
  }
  const ScratchFile log(text + LogLine(99, kInit));
  const std::vector<Seen> seen =
      ReadAll({log.Path()}, Layout::OfPattern("%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n"));
  ASSERT_EQ(seen.size(), sizes.size() + 1);
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    EXPECT_EQ(seen[i].message.size(), sizes[i]);
    EXPECT_EQ(seen[i].line, i + 1);
  }
}

TEST(RecordReader, SkipsTheRestOfARecordThatIsTooLong) {
  std::string dump;
  while (dump.size() <= RecordReader::kMostOfARecord + 100'000) {
    dump += "0x00,0x01,0x02,0x03,0x04,0x05,0x06,0x07,0x08,0x09,0x0a,0x0b,0x0c,0x0d,0x0e,0x0f,\n";
  }
  const ScratchFile log(LogLine(0, kInit) + LogLine(1, dump) + LogLine(2, kClose));
  const std::vector<Seen> seen = ReadAll({log.Path()});
  ASSERT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen[1].kind, RecordKind::TooLong);
  EXPECT_EQ(seen[2].message, kClose);
  const auto lines = static_cast<std::uint64_t>(std::count(dump.begin(), dump.end(), '\n'));
  EXPECT_EQ(seen[2].line, lines + 3);
}

TEST(RecordReader, SaysWhatIsWrongWithAFile) {
  const ScratchFile empty("");
  EXPECT_THAT(Refusal(empty.Path()), HasSubstr("is empty"));
  const ScratchFile binary(
      std::string_view("\x7F"
                       "ELF\0\0\0",
                       7));
  EXPECT_THAT(Refusal(binary.Path()), HasSubstr("is a binary file"));
  const ScratchFile properties("rootCategory=INFO, file\n");
  EXPECT_THAT(Refusal(properties.Path()), HasSubstr("is a property file"));
  const ScratchFile other("2026-11-21 18:55:08.786 [1] INFO  hello\n");
  EXPECT_THAT(Refusal(other.Path()), HasSubstr("has no line that Vextrel wrote"));
  EXPECT_THAT(Refusal(empty.Path() + ".none"), HasSubstr("can't be read"));
  const std::string folder = empty.Path().substr(0, empty.Path().rfind('/'));
  EXPECT_THAT(Refusal(folder), HasSubstr("is a folder"));
}

TEST(RecordReader, RefusesAFileThatIsCutWhileItIsRead) {
  const ScratchFile log(LogLine(0, kInit) + LogLine(1, kClose));
  ReadingOptions options;
  options.files = {log.Path()};
  RecordReader reader(std::move(options));
  Record record;
  ASSERT_TRUE(reader.Next(record));
  std::filesystem::resize_file(log.Path(), 10);
  try {
    while (reader.Next(record)) {
    }
    FAIL() << "nothing was refused";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("was cut or replaced while it was read"));
  }
}

TEST(RecordReader, HandsOutWhatIsThereBeforeItWaits) {
  const ScratchFile log(LogLine(0, kInit) + LogLine(1, kClose));
  ReadingOptions options;
  options.files = {log.Path()};
  options.follow = true;
  int waits = 0;
  options.stop = [&waits] { return ++waits > 1; };
  RecordReader reader(std::move(options));
  Record record;
  ASSERT_TRUE(reader.Next(record));
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.message, kClose);
  EXPECT_EQ(waits, 0);
  EXPECT_FALSE(reader.Next(record));
}

TEST(RecordReader, WaitsForTheFirstLineOfALog) {
  const ScratchFile log("");
  ReadingOptions options;
  options.files = {log.Path()};
  options.follow = true;
  options.stop = [&log, waits = 0]() mutable {
    if (++waits == 2) {
      log.Append(LogLine(0, kInit));
    }
    return waits > 4;
  };
  RecordReader reader(std::move(options));
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.message, kInit);
  EXPECT_FALSE(reader.Next(record));
}

TEST(RecordReader, FollowsAFileThatGrows) {
  const ScratchFile log(LogLine(0, kInit));
  ReadingOptions options;
  options.files = {log.Path()};
  options.follow = true;
  int waits = 0;
  const std::string next = LogLine(1, kClose);
  options.stop = [&] {
    ++waits;
    if (waits == 1) {
      log.Append(next.substr(0, 50));
    } else if (waits == 3) {
      log.Append(next.substr(50));
    }
    return waits > 6;
  };
  RecordReader reader(std::move(options));
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.message, kInit);
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.message, kClose);
  EXPECT_FALSE(reader.Next(record));
}

}  // namespace
}  // namespace vextrel_test
