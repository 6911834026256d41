// SPDX-License-Identifier: MIT
// Configuration files that are broken, huge or no configuration at all.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "hostile/config_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr std::size_t kMega = 1024 * 1024;

class HostileConfig : public HostileConfigFixture {
 protected:
  void ExpectTaken(const std::string& content) {
    UseConfig(content);
    EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
    EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
    ExpectCallsComeThrough();
  }
  void ExpectRefused(const std::string& content, const std::string& reason) {
    UseConfig(content);
    EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile()), ConfigFailed(reason)));
    ExpectCallsComeThrough();
  }
};

TEST_F(HostileConfig, MayHaveACommentOfAMegabyte) {
  ExpectTaken("#" + std::string(kMega, 'x') + "\n" + GoodConfig());
}

TEST_F(HostileConfig, MayHaveAPropertyOfAMegabyte) {
  ExpectTaken("other=" + std::string(kMega, 'x') + "\n" + GoodConfig());
}

TEST_F(HostileConfig, MayHaveALineOfAMegabyteThatIsNoProperty) {
  ExpectTaken(GoodConfig() + std::string(kMega, ' ') + std::string(kMega, 'x'));
}

TEST_F(HostileConfig, MayHaveAMegabyteOfUnclosedReferences) {
  std::string content = "other=";
  while (content.size() < kMega) {
    content += "$(${";
  }
  ExpectTaken(content + "\n" + GoodConfig());
}

TEST_F(HostileConfig, IsRefusedForAReferenceToANameOfAMegabyte) {
  const std::string begin = "Environment variable '";
  ExpectRefused("$(" + std::string(kMega, 'N') + ")\n" + GoodConfig(),
                begin + std::string(255 - begin.size(), 'N'));
}

TEST_F(HostileConfig, MayHold50MegabytesOfComments) {
  const std::string line = "# " + std::string(98, 'x') + "\n";
  std::string content;
  content.reserve(51 * kMega);
  while (content.size() < 50 * kMega) {
    content += line;
  }
  ExpectTaken(content + GoodConfig());
}

TEST_F(HostileConfig, MayBeOneLineOf50Megabytes) {
  ExpectTaken(GoodConfig() + "other=" + std::string(50 * kMega, 'x'));
}

TEST_F(HostileConfig, OfEveryByteIsRefused) {
  std::string content;
  for (int round = 0; round < 20; ++round) {
    for (int byte = 0; byte < 256; ++byte) {
      content += static_cast<char>(byte);
    }
  }
  ExpectRefused(content, "Unable to find category: rootCategory");
}

TEST_F(HostileConfig, OfZeroBytesIsRefused) {
  ExpectRefused(std::string(kMega, '\0'), "Unable to find category: rootCategory");
}

TEST_F(HostileConfig, MayHoldZeroBytesAfterItsLines) {
  ExpectTaken(GoodConfig() + std::string(1000, '\0') + "\n");
}

// Which of the module's many texts is refused first doesn't matter.
TEST_F(HostileConfig, ThatIsAModuleIsRefused) {
  SetVariable(kLogConfigVariable, ProxyPath().string().c_str());
  const std::vector<std::string> lines = Init();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], LoadingConfig(ProxyPath().string()));
  EXPECT_THAT(lines[1], StartsWith("ERROR  : Loading logger configuration failed. error = '"));
  EXPECT_THAT(lines[1], EndsWith("'"));
  ExpectCallsComeThrough();
}

TEST_F(HostileConfig, InUtf16IsRefused) {
  std::string content = "\xFF\xFE";
  for (const char letter : GoodConfig()) {
    content += letter;
    content += '\0';
  }
  ExpectRefused(content, "Unable to find category: rootCategory");
}

TEST_F(HostileConfig, WithOldMacLineEndsIsOneLine) {
  std::string content = GoodConfig();
  for (char& letter : content) {
    letter = letter == '\n' ? '\r' : letter;
  }
  content.insert(0, "#");
  ExpectRefused(content, "Unable to find category: rootCategory");
}

TEST_F(HostileConfig, MayNameAFolderAsItsLogFile) {
  UseConfig("rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
            Folder().string() + "\nappender.file.layout=SimpleLayout\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  ExpectCallsComeThrough();
}

TEST_F(HostileConfig, MayNameItselfAsItsLogFile) {
  const std::string content =
      "rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
      ConfigFile() +
      "\nappender.file.layout=PatternLayout\n"
      "appender.file.layout.ConversionPattern=%p %m%n\n";
  UseConfig(content);
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  std::vector<std::string> expected = SplitLines(content);
  for (const std::string& line : FileLines()) {
    expected.push_back(line);
  }
  EXPECT_THAT(SplitLines(ReadFile(ConfigFile())), ElementsAreArray(expected));
  ExpectCallsComeThrough();
}

TEST_F(HostileConfig, MayUseTheNameOfTheDefaultAppender) {
  UseConfig(
      "rootCategory=INFO, default\nappender.default=FileAppender\nappender.default.fileName=" +
      LogFile().string() +
      "\nappender.default.layout=PatternLayout\n"
      "appender.default.layout.ConversionPattern=%p %m%n\n");
  EXPECT_THAT(Init(), ElementsAre(LoadingConfig(ConfigFile())));
  EXPECT_THAT(LogLines(), ElementsAreArray(FileLines()));
  ExpectCallsComeThrough();
}

struct Kind {
  const char* name;
  const char* content;
};

class AnyConfig : public HostileConfigFixture, public ::testing::WithParamInterface<Kind> {};

TEST_P(AnyConfig, LetsCallsThrough) {
  UseConfig(GetParam().content);
  EXPECT_EQ(Init()[0], LoadingConfig(ConfigFile()));
  ExpectCallsComeThrough();
}

INSTANTIATE_TEST_SUITE_P(
    All, AnyConfig,
    ::testing::Values(
        Kind{"Empty", ""},
        Kind{"MissingLayout", "rootCategory=INFO, a\nappender.a=ConsoleAppender\n"},
        Kind{"UnknownAppenderType", "rootCategory=INFO, a\nappender.a=CarrierPigeonAppender\n"},
        Kind{"UnwritableLogFile",
             "rootCategory=DEBUG, a\nappender.a=FileAppender\n"
             "appender.a.fileName=no/such/folder/trace.log\nappender.a.layout=BasicLayout\n"},
        Kind{"UnresolvableReference", "rootCategory=$(VEXTREL_TEST_FIRST)\n"},
        Kind{"WindowsLineEnds", "rootCategory=WARN\r\nother=1\r\n"},
        Kind{"Utf8MarkOnly", "\xEF\xBB\xBF"},
        Kind{"Utf8MarkInFrontOfTheRootCategory", "\xEF\xBB\xBFrootCategory=WARN\n"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(HostileConfig, ThatIsAFolderLetsCallsThrough) {
  SetVariable(kLogConfigVariable, Folder().string().c_str());
  EXPECT_EQ(Init()[0], CannotOpenConfig(Folder().string()));
  const DebugOutput quiet;
  ExpectCallsComeThrough();
}

}  // namespace
}  // namespace vextrel_test
