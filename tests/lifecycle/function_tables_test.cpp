#include "lifecycle/function_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "calllog/logger_setup.h"
#include "lifecycle/library_fixture.h"
#include "lifecycle/proxy_state.h"

namespace vextrel_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

using Names = std::vector<const char*>;

const Names& LibNames() {
  static const Names names = {"GCGetInfo", "GCGetLastError", "GCInitLib", "GCCloseLib"};
  return names;
}
const Names& TLNames() {
  static const Names names = {"TLOpen",           "TLClose",
                              "TLGetInfo",        "TLGetNumInterfaces",
                              "TLGetInterfaceID", "TLGetInterfaceInfo",
                              "TLOpenInterface",  "TLUpdateInterfaceList"};
  return names;
}
const Names& IFNames() {
  static const Names names = {"IFClose",       "IFGetInfo",          "IFGetNumDevices",
                              "IFGetDeviceID", "IFUpdateDeviceList", "IFGetDeviceInfo",
                              "IFOpenDevice"};
  return names;
}
const Names& DevNames() {
  static const Names names = {"DevGetPort",        "DevGetNumDataStreams", "DevGetDataStreamID",
                              "DevOpenDataStream", "DevGetInfo",           "DevClose"};
  return names;
}
const Names& DSNames() {
  static const Names names = {"DSAnnounceBuffer",  "DSAllocAndAnnounceBuffer",
                              "DSFlushQueue",      "DSStartAcquisition",
                              "DSStopAcquisition", "DSGetInfo",
                              "DSGetBufferID",     "DSClose",
                              "DSRevokeBuffer",    "DSQueueBuffer",
                              "DSGetBufferInfo"};
  return names;
}
const Names& PortNames() {
  static const Names names = {"GCReadPort",        "GCWritePort",       "GCGetPortURL",
                              "GCGetNumPortURLs",  "GCGetPortInfo",     "GCGetPortURLInfo",
                              "GCReadPortStacked", "GCWritePortStacked"};
  return names;
}
const Names& EventNames() {
  static const Names names = {"GCRegisterEvent",  "GCUnregisterEvent", "EventGetData",
                              "EventGetDataInfo", "EventGetInfo",      "EventFlush",
                              "EventKill"};
  return names;
}

// The table's memory, slot by slot.
template <typename Table>
std::vector<void*> Slots(const Table& table) {
  std::vector<void*> slots(sizeof table / sizeof(void*));
  std::memcpy(slots.data(), &table, sizeof table);
  return slots;
}

// One test for each kind of table.
template <typename Row>
class FunctionTableTest : public ::testing::Test {};

template <typename TableType, const Names& (*namesInOrder)()>
struct Row {
  using Table = TableType;
  static const Names& names() { return namesInOrder(); }
};
using Rows = ::testing::Types<
    Row<vextrel::LibFunctionTable, LibNames>, Row<vextrel::TLFunctionTable, TLNames>,
    Row<vextrel::IFFunctionTable, IFNames>, Row<vextrel::DevFunctionTable, DevNames>,
    Row<vextrel::DSFunctionTable, DSNames>, Row<vextrel::PortFunctionTable, PortNames>,
    Row<vextrel::EventFunctionTable, EventNames>>;
TYPED_TEST_SUITE(FunctionTableTest, Rows);

TYPED_TEST(FunctionTableTest, HasASlotForEachFunctionAndOneForTheModule) {
  using Table = typename TypeParam::Table;
  EXPECT_TRUE(std::is_standard_layout_v<Table>);
  EXPECT_EQ(sizeof(Table), (TypeParam::names().size() + 1) * sizeof(void*));
}

TYPED_TEST(FunctionTableTest, IsConstructedWithZeroes) {
  using Table = typename TypeParam::Table;
  alignas(Table) std::array<unsigned char, sizeof(Table)> memory;
  memory.fill(0xFF);
  const auto* table = new (memory.data()) Table;
  EXPECT_THAT(Slots(*table), Each(nullptr));
}

TYPED_TEST(FunctionTableTest, HoldsTheTargetsExportsInOrderAndTheModuleLast) {
  const Module target(ScriptedTargetPath());
  std::vector<void*> expected;
  for (const char* name : TypeParam::names()) {
    expected.push_back(target.FindAddress(name));
    EXPECT_NE(expected.back(), nullptr) << name;
  }
  expected.push_back(target.handle());
  typename TypeParam::Table table;
  vextrel::ResolveTable(table, target.handle(), vextrel::GetRootLogger());
  EXPECT_THAT(Slots(table), ElementsAreArray(expected));
}

TYPED_TEST(FunctionTableTest, HoldsOnlyTheModuleOfATargetWithoutExports) {
  const Module target(ScriptedTargetPath());
  const Module empty(EmptyTargetPath());
  typename TypeParam::Table table;
  vextrel::ResolveTable(table, target.handle(), vextrel::GetRootLogger());
  vextrel::ResolveTable(table, empty.handle(), vextrel::GetRootLogger());
  std::vector<void*> expected(TypeParam::names().size(), nullptr);
  expected.push_back(empty.handle());
  EXPECT_THAT(Slots(table), ElementsAreArray(expected));
}

class FunctionTables : public LibraryFixture {};

TEST_F(FunctionTables, AllHoldTheModuleThatTheSameGCInitLibHasLoaded) {
  using vextrel::proxyState;
  const HeldTarget target;
  UseTarget(ScriptedTargetPath());
  ASSERT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_EQ(proxyState.targetModule, target.handle());
  EXPECT_EQ(proxyState.libTable->module, target.handle());
  EXPECT_EQ(proxyState.tlTable->module, target.handle());
  EXPECT_EQ(proxyState.ifTable->module, target.handle());
  EXPECT_EQ(proxyState.devTable->module, target.handle());
  EXPECT_EQ(proxyState.dsTable->module, target.handle());
  EXPECT_EQ(proxyState.portTable->module, target.handle());
  EXPECT_EQ(proxyState.eventTable->module, target.handle());
  EXPECT_EQ(::GCCloseLib(), GC_ERR_SUCCESS);
}

TEST_F(FunctionTables, LeaveALineForEachOfThe51FunctionsOfATargetWithoutExports) {
  Prepare(EmptyTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  EXPECT_THAT(
      TakeLines(),
      ElementsAre(LoadingLine(EmptyTargetPath()), kNoVersion, "ERROR GCGetInfo not exported",
                  "ERROR GCGetLastError not exported", "ERROR GCInitLib not exported",
                  "ERROR GCCloseLib not exported", "ERROR TLOpen not exported",
                  "ERROR TLClose not exported", "ERROR TLGetInfo not exported",
                  "ERROR TLGetNumInterfaces not exported", "ERROR TLGetInterfaceID not exported",
                  "ERROR TLGetInterfaceInfo not exported", "ERROR TLOpenInterface not exported",
                  "ERROR TLUpdateInterfaceList not exported", "ERROR IFClose not exported",
                  "ERROR IFGetInfo not exported", "ERROR IFGetNumDevices not exported",
                  "ERROR IFGetDeviceID not exported", "ERROR IFUpdateDeviceList not exported",
                  "ERROR IFGetDeviceInfo not exported", "ERROR IFOpenDevice not exported",
                  "ERROR DevClose not exported", "ERROR DevGetInfo not exported",
                  "ERROR DevGetPort not exported", "ERROR DevGetNumDataStreams not exported",
                  "ERROR DevGetDataStreamID not exported", "ERROR DevOpenDataStream not exported",
                  "ERROR DSAnnounceBuffer not exported",
                  "ERROR DSAllocAndAnnounceBuffer not exported", "ERROR DSFlushQueue not exported",
                  "ERROR DSStartAcquisition not exported", "ERROR DSStopAcquisition not exported",
                  "ERROR DSGetInfo not exported", "ERROR DSGetBufferID not exported",
                  "ERROR DSClose not exported", "ERROR DSRevokeBuffer not exported",
                  "ERROR DSQueueBuffer not exported", "ERROR DSGetBufferInfo not exported",
                  "ERROR GCReadPort not exported", "ERROR GCWritePort not exported",
                  "ERROR GCGetPortURL not exported", "ERROR GCGetNumPortURLs not exported",
                  "ERROR GCGetPortInfo not exported", "ERROR GCGetPortURLInfo not exported",
                  "ERROR GCReadPortStacked not exported", "ERROR GCWritePortStacked not exported",
                  "ERROR GCRegisterEvent not exported", "ERROR GCUnregisterEvent not exported",
                  "ERROR GEventGetData not exported", "ERROR EventGetDataInfo not exported",
                  "ERROR EventGetInfo not exported", "ERROR EventFlush not exported",
                  "ERROR EventKill not exported", "INFO GC_ERR_NOT_IMPLEMENTED=GCInitLib(void)"));
}

TEST_F(FunctionTables, MakeEveryFunctionOfATargetWithoutExportsNotImplemented) {
  Prepare(EmptyTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  ForEachFunction([this](const char* name, auto slot) {
    EXPECT_EQ(CallWithZeros(proxy.*slot), -1003) << name;
  });
}

TEST_F(FunctionTables, ReportDevCloseBeforeDevGetPort) {
  const auto target =
      ScriptedTargetPath().parent_path() / "scripted_target_without_DevClose_and_DevGetPort.cti";
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(target), kNoVersion, "ERROR DevClose not exported",
                          "ERROR DevGetPort not exported", kInitSucceeded));
}

struct MissingExport {
  const char* name;
  const char* line;
};

class MissingExportTest : public LibraryFixture,
                          public ::testing::WithParamInterface<MissingExport> {};

TEST_P(MissingExportTest, HasOneErrorLineAndIsNotImplemented) {
  const std::string name = GetParam().name;
  const HeldTarget target(ScriptedTargetWithout(name));
  const bool hasInit = name != "GCInitLib";
  Prepare(ScriptedTargetWithout(name));
  EXPECT_EQ(proxy.GCInitLib(), hasInit ? 0 : -1003);
  EXPECT_THAT(
      TakeLines(),
      ElementsAre(LoadingLine(ScriptedTargetWithout(name)), kNoVersion, GetParam().line,
                  hasInit ? kInitSucceeded : "INFO GC_ERR_NOT_IMPLEMENTED=GCInitLib(void)"));
  target.script().calls = 0;
  ForEachFunction([&](const char* each, auto slot) {
    if (name == each && hasInit) {
      EXPECT_EQ(CallWithZeros(proxy.*slot), -1003);
    }
  });
  EXPECT_EQ(target.script().calls, 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, MissingExportTest,
    ::testing::Values(
        MissingExport{"GCGetInfo", "ERROR GCGetInfo not exported"},
        MissingExport{"GCGetLastError", "ERROR GCGetLastError not exported"},
        MissingExport{"GCInitLib", "ERROR GCInitLib not exported"},
        MissingExport{"GCCloseLib", "ERROR GCCloseLib not exported"},
        MissingExport{"TLOpen", "ERROR TLOpen not exported"},
        MissingExport{"TLClose", "ERROR TLClose not exported"},
        MissingExport{"TLGetInfo", "ERROR TLGetInfo not exported"},
        MissingExport{"TLGetNumInterfaces", "ERROR TLGetNumInterfaces not exported"},
        MissingExport{"TLGetInterfaceID", "ERROR TLGetInterfaceID not exported"},
        MissingExport{"TLGetInterfaceInfo", "ERROR TLGetInterfaceInfo not exported"},
        MissingExport{"TLOpenInterface", "ERROR TLOpenInterface not exported"},
        MissingExport{"TLUpdateInterfaceList", "ERROR TLUpdateInterfaceList not exported"},
        MissingExport{"IFClose", "ERROR IFClose not exported"},
        MissingExport{"IFGetInfo", "ERROR IFGetInfo not exported"},
        MissingExport{"IFGetNumDevices", "ERROR IFGetNumDevices not exported"},
        MissingExport{"IFGetDeviceID", "ERROR IFGetDeviceID not exported"},
        MissingExport{"IFUpdateDeviceList", "ERROR IFUpdateDeviceList not exported"},
        MissingExport{"IFGetDeviceInfo", "ERROR IFGetDeviceInfo not exported"},
        MissingExport{"IFOpenDevice", "ERROR IFOpenDevice not exported"},
        MissingExport{"DevClose", "ERROR DevClose not exported"},
        MissingExport{"DevGetInfo", "ERROR DevGetInfo not exported"},
        MissingExport{"DevGetPort", "ERROR DevGetPort not exported"},
        MissingExport{"DevGetNumDataStreams", "ERROR DevGetNumDataStreams not exported"},
        MissingExport{"DevGetDataStreamID", "ERROR DevGetDataStreamID not exported"},
        MissingExport{"DevOpenDataStream", "ERROR DevOpenDataStream not exported"},
        MissingExport{"DSAnnounceBuffer", "ERROR DSAnnounceBuffer not exported"},
        MissingExport{"DSAllocAndAnnounceBuffer", "ERROR DSAllocAndAnnounceBuffer not exported"},
        MissingExport{"DSFlushQueue", "ERROR DSFlushQueue not exported"},
        MissingExport{"DSStartAcquisition", "ERROR DSStartAcquisition not exported"},
        MissingExport{"DSStopAcquisition", "ERROR DSStopAcquisition not exported"},
        MissingExport{"DSGetInfo", "ERROR DSGetInfo not exported"},
        MissingExport{"DSGetBufferID", "ERROR DSGetBufferID not exported"},
        MissingExport{"DSClose", "ERROR DSClose not exported"},
        MissingExport{"DSRevokeBuffer", "ERROR DSRevokeBuffer not exported"},
        MissingExport{"DSQueueBuffer", "ERROR DSQueueBuffer not exported"},
        MissingExport{"DSGetBufferInfo", "ERROR DSGetBufferInfo not exported"},
        MissingExport{"GCReadPort", "ERROR GCReadPort not exported"},
        MissingExport{"GCWritePort", "ERROR GCWritePort not exported"},
        MissingExport{"GCGetPortURL", "ERROR GCGetPortURL not exported"},
        MissingExport{"GCGetNumPortURLs", "ERROR GCGetNumPortURLs not exported"},
        MissingExport{"GCGetPortInfo", "ERROR GCGetPortInfo not exported"},
        MissingExport{"GCGetPortURLInfo", "ERROR GCGetPortURLInfo not exported"},
        MissingExport{"GCReadPortStacked", "ERROR GCReadPortStacked not exported"},
        MissingExport{"GCWritePortStacked", "ERROR GCWritePortStacked not exported"},
        MissingExport{"GCRegisterEvent", "ERROR GCRegisterEvent not exported"},
        MissingExport{"GCUnregisterEvent", "ERROR GCUnregisterEvent not exported"},
        MissingExport{"EventGetData", "ERROR GEventGetData not exported"},
        MissingExport{"EventGetDataInfo", "ERROR EventGetDataInfo not exported"},
        MissingExport{"EventGetInfo", "ERROR EventGetInfo not exported"},
        MissingExport{"EventFlush", "ERROR EventFlush not exported"},
        MissingExport{"EventKill", "ERROR EventKill not exported"}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace vextrel_test
