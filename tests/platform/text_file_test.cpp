// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/platform.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::platform::OpenTextFile;

class TextFile : public ProxyFiles {
 protected:
  [[nodiscard]] std::string Path(const std::string& name) const {
    return (Folder() / name).string();
  }

  static std::string Content(std::ifstream file) {
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(TextFile, IsOpenedForReading) {
  WriteFile(Path("a.txt"), "one\ntwo\n\nfour");
  std::ifstream file = OpenTextFile(Path("a.txt"));
  ASSERT_TRUE(file.is_open());
  EXPECT_TRUE(file.good());
  EXPECT_EQ(Content(std::move(file)), "one\ntwo\n\nfour");
}

TEST_F(TextFile, HasTheLineEndsOfTheSystem) {
  WriteFile(Path("a.txt"), "one\r\ntwo\r\n");
  EXPECT_EQ(Content(OpenTextFile(Path("a.txt"))), kOnWindows ? "one\ntwo\n" : "one\r\ntwo\r\n");
}

TEST_F(TextFile, IsOpenedThoughItIsEmpty) {
  WriteFile(Path("empty.txt"), "");
  std::ifstream file = OpenTextFile(Path("empty.txt"));
  ASSERT_TRUE(file.is_open());
  EXPECT_EQ(Content(std::move(file)), "");
}

TEST_F(TextFile, IsOpenedWithBlanksInItsName) {
  WriteFile(Path("a b  c.txt"), "blank");
  EXPECT_EQ(Content(OpenTextFile(Path("a b  c.txt"))), "blank");
}

TEST_F(TextFile, IsNotOpenedIfItIsMissing) {
  EXPECT_FALSE(OpenTextFile(Path("missing.txt")).is_open());
  EXPECT_FALSE(OpenTextFile(Path("no folder/missing.txt")).is_open());
  EXPECT_FALSE(OpenTextFile("").is_open());
}

TEST_F(TextFile, IsNotCreatedByOpening) {
  EXPECT_FALSE(OpenTextFile(Path("missing.txt")).is_open());
  EXPECT_FALSE(std::filesystem::exists(Path("missing.txt")));
}

TEST_F(TextFile, IsNotOpenedIfItIsAFolder) {
  std::filesystem::create_directory(Path("folder"));
  EXPECT_FALSE(OpenTextFile(Path("folder")).is_open());
  EXPECT_FALSE(OpenTextFile(Path("folder/")).is_open());
}

TEST_F(TextFile, IsOpenedWhileItIsWritten) {
  std::ofstream writer(Path("a.txt"));
  writer << "written " << std::flush;
  std::ifstream file = OpenTextFile(Path("a.txt"));
  ASSERT_TRUE(file.is_open());
  writer << "further" << std::flush;
  EXPECT_EQ(Content(std::move(file)), "written further");
}

TEST_F(TextFile, MayBeWrittenWhileItIsOpen) {
  WriteFile(Path("a.txt"), "old");
  std::ifstream file = OpenTextFile(Path("a.txt"));
  ASSERT_TRUE(file.is_open());
  EXPECT_TRUE(std::ofstream(Path("a.txt")).is_open());
}

TEST_F(TextFile, MayBeOpenedTwice) {
  WriteFile(Path("a.txt"), "twice");
  const std::ifstream first = OpenTextFile(Path("a.txt"));
  ASSERT_TRUE(first.is_open());
  EXPECT_EQ(Content(OpenTextFile(Path("a.txt"))), "twice");
}

}  // namespace
}  // namespace vextrel_test
