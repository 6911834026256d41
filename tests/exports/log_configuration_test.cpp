// SPDX-License-Identifier: MIT
// The calls' and the registry's lines obey a configuration: they go through the category "Vextrel"
// and whatever a property file makes of it and of its appenders.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "exports/exports_fixture.h"
#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;

class LogConfiguration : public LibraryFixture {
 protected:
  // Binds the proxy with two log files, "root" and "own", and these further properties.
  void BindWith(const std::string& properties) {
    std::string config = properties;
    for (const char* name : {"root", "own"}) {
      const std::string appender = std::string("appender.") + name;
      config += appender + "=FileAppender\n" + appender + ".fileName=" + Path(name) + "\n" +
                appender + ".layout=PatternLayout\n" + appender +
                ".layout.ConversionPattern=%p %c: %m%n\n";
    }
    WriteFile(Folder() / "log.properties", config);
    SetVariable(kLogConfigVariable, (Folder() / "log.properties").string().c_str());
    UseTarget(ScriptedTargetPath());
    LoadProxy();
    EXPECT_EQ(proxy.GCInitLib(), 0);
    for (const char* name : {"root", "own"}) {
      startLines_[name == std::string("own")] = SplitLines(ReadFile(Path(name))).size();
    }
  }

  // What the calls have added to one of the files.
  [[nodiscard]] std::vector<std::string> LinesOf(const std::string& name) const {
    std::vector<std::string> lines = SplitLines(ReadFile(Path(name)));
    lines.erase(lines.begin(),
                lines.begin() + static_cast<std::ptrdiff_t>(startLines_[name == "own"]));
    return lines;
  }

  // One line of a call, and one of the registry.
  void Call() { EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0); }
  void Misuse() { EXPECT_EQ(proxy.IFClose(nullptr), 0); }
  static constexpr const char* kCall =
      "INFO Vextrel: GC_ERR_SUCCESS=EventFlush(hEvent=0x0000000000006000)";
  static constexpr const char* kMisuseCall =
      "INFO Vextrel: GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000000000)";
  const std::string kMisuse = std::string("ERROR Vextrel: ") + model::kIllegalInterface;

 private:
  [[nodiscard]] std::string Path(const std::string& name) const {
    return (Folder() / (name + ".log")).string();
  }

  std::size_t startLines_[2] = {};
};

TEST_F(LogConfiguration, NamesTheCategoryOfEveryRecordsLines) {
  BindWith("rootCategory=ERROR, root\n");
  TL_HANDLE transportLayer = Handle(0x1000);
  IF_HANDLE interfaceHandle = Handle(0x2000);
  DEV_HANDLE device = Handle(0x3000);
  DS_HANDLE stream = Handle(0x4000);
  BUFFER_HANDLE buffer = Handle(0x5000);
  EXPECT_EQ(proxy.TLOpen(&transportLayer), 0);
  // Everything twice: the second time each level has a line.
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(proxy.TLOpenInterface(transportLayer, "i", &interfaceHandle), 0);
    EXPECT_EQ(proxy.IFOpenDevice(interfaceHandle, "d", DEVICE_ACCESS_CONTROL, &device), 0);
    EXPECT_EQ(proxy.DevOpenDataStream(device, "s", &stream), 0);
    EXPECT_EQ(proxy.DSAllocAndAnnounceBuffer(stream, 8, nullptr, &buffer), 0);
    EVENT_HANDLE event = Handle(0x6000);
    EXPECT_EQ(proxy.GCRegisterEvent(buffer, EVENT_ERROR, &event), 0);
  }
  const std::vector<std::string> lines = LinesOf("root");
  EXPECT_GE(lines.size(), 5U);
  EXPECT_THAT(lines, ::testing::Each(::testing::StartsWith("ERROR Vextrel: ")));
}

TEST_F(LogConfiguration, AnAppendersThresholdKeepsTheCallsLinesOut) {
  BindWith("rootCategory=INFO, root, own\nappender.own.threshold=WARN\n");
  Call();
  Misuse();
  EXPECT_THAT(LinesOf("root"), ElementsAre(kCall, kMisuseCall, kMisuse));
  EXPECT_THAT(LinesOf("own"), ElementsAre(kMisuse));
}

TEST_F(LogConfiguration, AnAdditiveCategoryWritesToTheRootsAppendersToo) {
  BindWith("rootCategory=ERROR, root\ncategory.Vextrel=INFO, own\n");
  Call();
  Misuse();
  EXPECT_THAT(LinesOf("own"), ElementsAre(kCall, kMisuseCall, kMisuse));
  EXPECT_THAT(LinesOf("root"), ElementsAre(kCall, kMisuseCall, kMisuse));
}

TEST_F(LogConfiguration, ACategoryThatIsNotAdditiveWritesToItsOwnAppendersAlone) {
  BindWith("rootCategory=INFO, root\ncategory.Vextrel=INFO, own\nadditivity.Vextrel=false\n");
  Call();
  Misuse();
  EXPECT_THAT(LinesOf("own"), ElementsAre(kCall, kMisuseCall, kMisuse));
  EXPECT_THAT(LinesOf("root"), ElementsAre());
}

TEST_F(LogConfiguration, TheCategorysOwnPriorityKeepsTheCallsLinesOut) {
  BindWith("rootCategory=INFO, root\ncategory.Vextrel=ERROR\n");
  Call();
  Misuse();
  EXPECT_THAT(LinesOf("root"), ElementsAre(kMisuse));
}

}  // namespace
}  // namespace vextrel_test
