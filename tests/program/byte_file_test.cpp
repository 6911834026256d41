// SPDX-License-Identifier: MIT
#include "reading/byte_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using vextrel::program::ByteFile;

std::string SentenceAbout(const std::string& path) {
  try {
    const ByteFile file(path);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(ByteFile, IsReadWhileItGrows) {
  // A name that no code page of Windows has.
  const ScratchFile log("one", "\xD0\xB6\xE2\x82\xAC.log");
  ByteFile file(log.Path());
  char bytes[16];
  EXPECT_EQ(file.Size(), 3U);
  ASSERT_EQ(file.Read(bytes, 2), 2U);
  ASSERT_EQ(file.Read(bytes, sizeof bytes), 1U);
  EXPECT_EQ(file.Read(bytes, sizeof bytes), 0U);
  log.Append("two");
  ASSERT_EQ(file.Read(bytes, sizeof bytes), 3U);
  EXPECT_EQ(std::string(bytes, 3), "two");
  EXPECT_FALSE(file.WasReplaced(6));
}

TEST(ByteFile, NoticesThatItWasCutOrReplaced) {
  const ScratchFile log("a long line");
  const ByteFile cut(log.Path());
  std::filesystem::resize_file(log.Path(), 2);
  EXPECT_TRUE(cut.WasReplaced(11));
  EXPECT_FALSE(cut.WasReplaced(2));
  std::filesystem::rename(log.Path(), log.Path() + ".1");
  EXPECT_FALSE(cut.WasReplaced(2)) << "there is no other file yet";
  static_cast<void>(log.Beside("new", "app.log"));
  EXPECT_TRUE(cut.WasReplaced(2));
}

TEST(ByteFile, SaysWhatIsWrongWithAPath) {
  const ScratchFile log("");
  const std::string folder = std::filesystem::path(log.Path()).parent_path().generic_string();
  EXPECT_THAT(SentenceAbout(folder),
              testing::HasSubstr("is a folder: give the path of a call log"));
  EXPECT_THAT(SentenceAbout(log.Path() + ".none"), testing::HasSubstr("can't be read ("));
  EXPECT_EQ(SentenceAbout(log.Path()), "");
}

}  // namespace
}  // namespace vextrel_test
