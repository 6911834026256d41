// SPDX-License-Identifier: MIT
#include "commands/log_mark.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using testing::ElementsAre;
using vextrel::program::LogMark;
using vextrel::program::ReadingOptions;
using vextrel::program::Record;
using vextrel::program::RecordReader;

ReadingOptions Since(const LogMark& mark) {
  ReadingOptions options;
  mark.ShowWhatCameSince(options);
  return options;
}

void Write(const ScratchFile& beside, const std::string& text, const std::string& name) {
  static_cast<void>(beside.Beside(text, name));
}

// An earlier run of three lines, and what later ones write.
const std::string kEarlier = LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") + LogLine(1, "a\nb");
const std::string kLater = LogLine(2, "GC_ERR_SUCCESS=GCInitLib(void)");

TEST(LogMark, OfALogThatIsntThereLeavesNothingOut) {
  const ScratchFile folder("", "empty");
  const LogMark mark(folder.Path() + ".log");
  EXPECT_EQ(mark.Size(), 0U);
  const std::string log = folder.Beside(kLater, "empty.log");
  EXPECT_THAT(Since(mark).files, ElementsAre(log));
  EXPECT_EQ(Since(mark).skip, 0U);
}

TEST(LogMark, LeavesOutWhatWasThere) {
  const ScratchFile log(kEarlier);
  const LogMark mark(log.Path());
  EXPECT_EQ(mark.Size(), kEarlier.size());
  log.Append(kLater);
  EXPECT_THAT(Since(mark).files, ElementsAre(log.Path()));
  EXPECT_EQ(Since(mark).skip, kEarlier.size());
  RecordReader reader(Since(mark));
  EXPECT_EQ(reader.TotalBytes(), kLater.size());
  Record record;
  ASSERT_TRUE(reader.Next(record));
  EXPECT_EQ(record.message, "GC_ERR_SUCCESS=GCInitLib(void)");
  EXPECT_EQ(record.place.line, 4U);
  EXPECT_FALSE(reader.Next(record));
  EXPECT_EQ(reader.BytesRead(), kLater.size());
  EXPECT_EQ(reader.Lines(), 1U);
}

TEST(LogMark, LeavesNothingOutOfALogThatBeganAnew) {
  const ScratchFile log(kEarlier);
  const LogMark mark(log.Path());
  // Shorter than before, and longer.
  for (const std::string& text : {kLater, kLater + kLater + kLater + kLater}) {
    Write(log, text, "app.log");
    EXPECT_THAT(Since(mark).files, ElementsAre(log.Path()));
    EXPECT_EQ(Since(mark).skip, 0U);
  }
}

TEST(LogMark, FollowsALogThatWasRolled) {
  const ScratchFile log(kEarlier);
  const std::string old = log.Beside("of a run before that", "app.log.1");
  const LogMark mark(log.Path());
  log.Append(kLater);
  const std::string oldest = log.Path() + ".2";
  ASSERT_EQ(std::rename(old.c_str(), oldest.c_str()), 0);
  ASSERT_EQ(std::rename(log.Path().c_str(), old.c_str()), 0);
  Write(log, "newest", "app.log");
  EXPECT_THAT(Since(mark).files, ElementsAre(old, log.Path()));
  EXPECT_EQ(Since(mark).skip, kEarlier.size());
  // Rolled until it fell out: all that's left is new.
  Write(log, "newer", "app.log.2");
  Write(log, "newer still", "app.log.1");
  EXPECT_THAT(Since(mark).files, ElementsAre(oldest, old, log.Path()));
  EXPECT_EQ(Since(mark).skip, 0U);
}

TEST(LogMark, LeavesOutFilesThatWereFullBefore) {
  const ScratchFile log(kEarlier);
  const LogMark mark(log.Path());
  const std::string old = log.Path() + ".1";
  ASSERT_EQ(std::rename(log.Path().c_str(), old.c_str()), 0);
  Write(log, kLater, "app.log");
  EXPECT_THAT(Since(mark).files, ElementsAre(log.Path()));
  EXPECT_EQ(Since(mark).skip, 0U);
  // The same if the log had been removed, and only that file was there.
  ASSERT_EQ(std::remove(log.Path().c_str()), 0);
  const LogMark later(log.Path());
  Write(log, kLater, "app.log");
  EXPECT_EQ(later.Size(), 0U);
  EXPECT_THAT(Since(later).files, ElementsAre(log.Path()));
}

}  // namespace
}  // namespace vextrel_test
