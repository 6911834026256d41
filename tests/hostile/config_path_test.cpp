// SPDX-License-Identifier: MIT
// Paths of configuration files with odd letters, and of odd lengths.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <string>

#include "hostile/config_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kSeparator = kOnWindows ? '\\' : '/';

class ConfigPath : public HostileConfigFixture {
 protected:
  // Writes a configuration; the name is what the system gets, byte by byte.
  [[nodiscard]] std::string WriteConfig(const std::string& name) const {
    const std::string path = Folder().string() + kSeparator + name;
    std::ofstream file(path, std::ios::binary);
    file << GoodConfig();
    EXPECT_TRUE(file.good()) << name;
    return path;
  }

  // The file is loaded, or all of its path is shown if the system does not open such a path.
  void ExpectTakenWhole(const std::string& path) {
    const bool opens = std::ifstream(path).is_open();
    EXPECT_TRUE(opens || kOnWindows);
    SetVariable(kLogConfigVariable, path.c_str());
    if (opens) {
      EXPECT_THAT(Init(), ElementsAre(LoadingConfig(path)));
      EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
    } else {
      EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(path))));
    }
    const DebugOutput quiet;
    ExpectCallsComeThrough();
  }
};

TEST_F(ConfigPath, MayHoldNonAsciiLetters) {
  const std::string path = WriteConfig("Protokoll f\xC3\xBCr K\xC3\xA4mer\xC3\xA1.properties");
  ASSERT_TRUE(std::ifstream(path).is_open());
  ExpectTakenWhole(path);
}

TEST_F(ConfigPath, MayHoldBracketsAndDollarSigns) {
  ExpectTakenWhole(WriteConfig("a) $ (b) $[c].properties"));
}

TEST_F(ConfigPath, MayEndInAnUnclosedReference) {
  ExpectTakenWhole(WriteConfig("log.properties$("));
}

class LongConfigPath : public ConfigPath, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongConfigPath, IsTakenWhole) {
  std::string name = "log.properties";
  if ((GetParam() - Folder().string().size() - 1 - name.size()) % 2 != 0) {
    name = "logs.properties";
  }
  std::string path = WriteConfig(name);
  path.resize(path.size() - name.size());
  while (path.size() + name.size() < GetParam()) {
    path += '.';
    path += kSeparator;
  }
  path += name;
  ASSERT_EQ(path.size(), GetParam());
  ExpectTakenWhole(path);
}

TEST_P(LongConfigPath, IsTakenWholeFromAReference) {
  std::string root = Folder().string();
  const std::string file = WriteConfig("log.properties").substr(root.size());
  while (root.size() + file.size() + 2 <= GetParam()) {
    root += kSeparator;
    root += '.';
  }
  SetVariable(kFirst, root.c_str());
  SetVariable(kLogConfigVariable, ("$(VEXTREL_TEST_FIRST)" + file).c_str());
  const std::string path = root + file;
  EXPECT_EQ(Init()[0],
            std::ifstream(path).is_open() ? LoadingConfig(path) : CannotOpenConfig(path));
  const DebugOutput quiet;
  ExpectCallsComeThrough();
}

TEST_P(LongConfigPath, IsShownWholeIfThereIsNoSuchFile) {
  std::string path = Folder().string() + kSeparator;
  while (path.size() < GetParam()) {
    path += static_cast<char>('a' + path.size() % 23);
  }
  SetVariable(kLogConfigVariable, path.c_str());
  EXPECT_THAT(Init(), ElementsAreArray(DefaultLines(CannotOpenConfig(path))));
}

INSTANTIATE_TEST_SUITE_P(AroundTheBuffer, LongConfigPath,
                         ::testing::Values(255, 256, 1022, 1023, 1024, 1025, 1100),
                         ::testing::PrintToStringParamName());

}  // namespace
}  // namespace vextrel_test
