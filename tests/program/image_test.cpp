// SPDX-License-Identifier: MIT
#include "images/image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "images/file_bytes.h"
#include "launching/gentl_functions.h"
#include "launching/system.h"
#include "program/made_images.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> NamesOf(const std::vector<NeededLibrary>& libraries) {
  std::vector<std::string> names;
  for (const NeededLibrary& each : libraries) {
    names.push_back(each.name + (each.isDelayed ? " (delayed)" : ""));
  }
  return names;
}

TEST(Image, OfBothSystemsIsReadOnEither) {
  MadeImage made;
  made.needed = {"one.dll", "two.dll"};
  made.delayed = {"three.dll"};
  made.exports = {"GCInitLib", "TLOpen"};
  made.runPath = "$ORIGIN/lib:/opt";
  made.neededVersion = "ONE_1.2";

  const Image elf = ParseImage(MadeElf(made));
  EXPECT_EQ(elf.kind, ImageKind::Elf);
  EXPECT_EQ(elf.machine, Machine::X64);
  EXPECT_TRUE(elf.isLibrary);
  EXPECT_FALSE(elf.isDamaged);
  EXPECT_THAT(NamesOf(elf.needed), ElementsAre("one.dll", "two.dll"));
  EXPECT_THAT(elf.needed[0].versions, ElementsAre("ONE_1.2"));
  EXPECT_THAT(elf.exports, ElementsAre("GCInitLib", "TLOpen"));
  EXPECT_EQ(elf.runPath, "$ORIGIN/lib:/opt");
  EXPECT_FALSE(elf.isRunPathFirst);

  const Image pe = ParseImage(MadePe(made));
  EXPECT_EQ(pe.kind, ImageKind::Pe);
  EXPECT_EQ(pe.machine, Machine::X64);
  EXPECT_TRUE(pe.isLibrary);
  EXPECT_FALSE(pe.isDamaged);
  EXPECT_THAT(NamesOf(pe.needed), ElementsAre("one.dll", "two.dll", "three.dll (delayed)"));
  EXPECT_THAT(pe.exports, ElementsAre("GCInitLib", "TLOpen"));
  EXPECT_FALSE(pe.runsOnAnyMachine);
  EXPECT_FALSE(pe.wantsElevation);
}

TEST(Image, TellsTheMachineAndWhatAProgramWants) {
  MadeImage made;
  made.isLibrary = false;
  EXPECT_FALSE(ParseImage(MadeElf(made)).isLibrary);
  EXPECT_FALSE(ParseImage(MadePe(made)).isLibrary);
  made.machine = 183;
  EXPECT_EQ(ParseImage(MadeElf(made)).machine, Machine::Arm64);
  made.machine = 0xAA64;
  EXPECT_EQ(ParseImage(MadePe(made)).machine, Machine::Arm64);
  made.machine = 3;
  EXPECT_EQ(ParseImage(MadeElf(made)).machine, Machine::X86);
  made.machine = 0x14C;
  EXPECT_EQ(ParseImage(MadePe(made)).machine, Machine::X86);
  made.dotNetFlags = 1;  // nothing but managed code
  EXPECT_TRUE(ParseImage(MadePe(made)).runsOnAnyMachine);
  made.dotNetFlags = 3;  // and 32 bits required
  EXPECT_FALSE(ParseImage(MadePe(made)).runsOnAnyMachine);
  made.manifest = R"(<requestedExecutionLevel level="requireAdministrator" uiAccess="false"/>)";
  EXPECT_TRUE(ParseImage(MadePe(made)).wantsElevation);
  made.manifest = R"(<requestedExecutionLevel level="asInvoker" uiAccess="false"/>)";
  EXPECT_FALSE(ParseImage(MadePe(made)).wantsElevation);
}

// Each byte changed, and each length: nothing may be read that isn't there.
TEST(Image, SurvivesDamage) {
  MadeImage made;
  made.needed = {"one.dll"};
  made.exports = {"GCInitLib"};
  made.neededVersion = "ONE_1.2";
  for (const std::string& whole : {MadeElf(made), MadePe(made)}) {
    std::size_t damaged = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
      damaged += ParseImage(std::string_view(whole).substr(0, i)).isDamaged ? 1 : 0;
      std::string changed = whole;
      changed[i] = static_cast<char>(changed[i] ^ 0xFF);
      damaged += ParseImage(changed).isDamaged ? 1 : 0;
    }
    EXPECT_GT(damaged, whole.size() / 2);
  }
  EXPECT_EQ(ParseImage("").kind, ImageKind::None);
  EXPECT_EQ(ParseImage("#!/bin/sh\n").kind, ImageKind::None);
}

TEST(Image, OfWhatTheLinkerMadeIsRead) {
  const Image camera = ReadImage(PathOf(SIMULATED_CAMERA));
  EXPECT_EQ(camera.kind, kOwnImageKind);
  EXPECT_EQ(camera.machine, Machine::X64);
  EXPECT_TRUE(camera.isLibrary);
  EXPECT_FALSE(camera.isDamaged);
  EXPECT_THAT(camera.exports, Contains("TLOpen"));
  EXPECT_THAT(camera.exports, Not(Contains("DSGetNumBufferParts")));
  EXPECT_EQ(FirstNewerFunction(camera.exports), "");
  const bool isPe = camera.kind == ImageKind::Pe;
  EXPECT_THAT(NamesOf(camera.needed), Contains(isPe ? "KERNEL32.dll" : "libc.so.6"));
  const Image extended = ReadImage(PathOf(SIMULATED_CAMERA_EXTENDED));
  EXPECT_EQ(FirstNewerFunction(extended.exports), "DSGetBufferChunkData");
  const Image module = ReadImage(PathOf(VEXTREL_EXTENDED_MODULE));
  for (const GentlVersion& version : GentlVersions()) {
    EXPECT_THAT(Lacking(version, module.exports), IsEmpty()) << version.name;
  }
  EXPECT_FALSE(ReadImage(PathOf(GRAB_PROGRAM)).isLibrary);
}

TEST(FileBytes, KeepTextThatIsNoValidUtf16) {
  using namespace std::string_literals;
  // A letter of each length, and surrogates without partners.
  const std::u16string text = u"a\u00E9\u65E5"s + u"\xD83D\xDE00" + u"\xD800" + u"b\xDC00";
  EXPECT_EQ(FromUtf16(text),
            "a\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\xED\xA0\x80"
            "b\xED\xB0\x80");
  EXPECT_EQ(ToUtf16(FromUtf16(text)), text);
  EXPECT_EQ(ToUtf16("a\xFF\xC3"), u"a\uFFFD\uFFFD");
}

}  // namespace
}  // namespace vextrel_test
