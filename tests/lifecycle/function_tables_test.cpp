// SPDX-License-Identifier: MIT
#include "lifecycle/function_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
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

using Names = std::vector<std::string>;

// All functions in the order of the tables' slots, which is that of the look-up but for the
// devices' last two, which are looked up first.
Names NamesInOrderOfSlots() {
  Names names = FunctionNames();
  const auto begin = std::ranges::find(names, "DevClose");
  const auto end = std::ranges::find(names, "DSAnnounceBuffer");
  std::reverse(begin, begin + 2);
  std::rotate(begin, begin + 2, end);
  return names;
}

std::string NotExported(const std::string& name) {
  return "ERROR " + NameInMissingLine(name) + " not exported";
}

// The table's memory, slot by slot.
template <typename Table>
std::vector<void*> Slots(const Table& table) {
  std::vector<void*> slots(sizeof table / sizeof(void*));
  std::memcpy(slots.data(), &table, sizeof table);
  return slots;
}

using vextrel::DevFunctionTable;
using vextrel::DSFunctionTable;
using vextrel::EventFunctionTable;
using vextrel::IFFunctionTable;
using vextrel::LibFunctionTable;
using vextrel::PortFunctionTable;
using vextrel::TLFunctionTable;

// How many functions a table has; the last slot is the module's.
template <typename Table>
constexpr std::size_t kSlotCount = sizeof(Table) / sizeof(void*) - 1;

// A table's first function.
template <typename Table>
constexpr const char* kFirst = nullptr;
template <>
constexpr const char* kFirst<LibFunctionTable> = "GCGetInfo";
template <>
constexpr const char* kFirst<TLFunctionTable> = "TLOpen";
template <>
constexpr const char* kFirst<IFFunctionTable> = "IFClose";
template <>
constexpr const char* kFirst<DevFunctionTable> = "DevGetPort";
template <>
constexpr const char* kFirst<DSFunctionTable> = "DSAnnounceBuffer";
template <>
constexpr const char* kFirst<PortFunctionTable> = "GCReadPort";
template <>
constexpr const char* kFirst<EventFunctionTable> = "GCRegisterEvent";

// One test for each kind of table.
template <typename Table>
class FunctionTableTest : public ::testing::Test {
 protected:
  static Names NamesInOrder() {
    const Names all = NamesInOrderOfSlots();
    const auto first = std::ranges::find(all, kFirst<Table>);
    return {first, first + static_cast<std::ptrdiff_t>(kSlotCount<Table>)};
  }
};
using Tables =
    ::testing::Types<LibFunctionTable, TLFunctionTable, IFFunctionTable, DevFunctionTable,
                     DSFunctionTable, PortFunctionTable, EventFunctionTable>;
TYPED_TEST_SUITE(FunctionTableTest, Tables);

TEST(FunctionTables, HaveASlotForEachFunction) {
  EXPECT_EQ(kSlotCount<LibFunctionTable> + kSlotCount<TLFunctionTable> +
                kSlotCount<IFFunctionTable> + kSlotCount<DevFunctionTable> +
                kSlotCount<DSFunctionTable> + kSlotCount<PortFunctionTable> +
                kSlotCount<EventFunctionTable>,
            kFunctionCount);
}

TYPED_TEST(FunctionTableTest, IsConstructedWithZeroes) {
  EXPECT_TRUE(std::is_standard_layout_v<TypeParam>);
  alignas(TypeParam) std::array<unsigned char, sizeof(TypeParam)> memory;
  memory.fill(0xFF);
  const auto* table = new (memory.data()) TypeParam;
  EXPECT_THAT(Slots(*table), Each(nullptr));
}

TYPED_TEST(FunctionTableTest, HoldsTheTargetsExportsInOrderAndTheModuleLast) {
  const Module target(ScriptedTargetPath());
  std::vector<void*> expected;
  for (const std::string& name : TestFixture::NamesInOrder()) {
    expected.push_back(target.FindAddress(name.c_str()));
    EXPECT_NE(expected.back(), nullptr) << name;
  }
  expected.push_back(target.Handle());
  TypeParam table;
  vextrel::ResolveTable(table, target.Handle(), vextrel::GetRootLogger());
  EXPECT_THAT(Slots(table), ElementsAreArray(expected));
}

TYPED_TEST(FunctionTableTest, HoldsOnlyTheModuleOfATargetWithoutExports) {
  const Module target(ScriptedTargetPath());
  const Module empty(EmptyTargetPath());
  TypeParam table;
  vextrel::ResolveTable(table, target.Handle(), vextrel::GetRootLogger());
  vextrel::ResolveTable(table, empty.Handle(), vextrel::GetRootLogger());
  std::vector<void*> expected(TestFixture::NamesInOrder().size(), nullptr);
  expected.push_back(empty.Handle());
  EXPECT_THAT(Slots(table), ElementsAreArray(expected));
}

using FunctionTablesOfTarget = LibraryFixture;

TEST_F(FunctionTablesOfTarget, AllHoldTheModuleThatTheSameGCInitLibHasLoaded) {
  using vextrel::proxyState;
  const HeldTarget target;
  UseTarget(ScriptedTargetPath());
  ASSERT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_EQ(proxyState.targetModule, target.Handle());
  EXPECT_EQ(proxyState.libTable->module, target.Handle());
  EXPECT_EQ(proxyState.tlTable->module, target.Handle());
  EXPECT_EQ(proxyState.ifTable->module, target.Handle());
  EXPECT_EQ(proxyState.devTable->module, target.Handle());
  EXPECT_EQ(proxyState.dsTable->module, target.Handle());
  EXPECT_EQ(proxyState.portTable->module, target.Handle());
  EXPECT_EQ(proxyState.eventTable->module, target.Handle());
  EXPECT_EQ(::GCCloseLib(), GC_ERR_SUCCESS);
}

TEST_F(FunctionTablesOfTarget, LeaveALineForEachFunctionThatIsNotExported) {
  Prepare(EmptyTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  std::vector<std::string> expected = {LoadingLine(EmptyTargetPath()), kNoVersion};
  for (const std::string& name : FunctionNames()) {
    expected.push_back(NotExported(name));
  }
  expected.emplace_back(kInitNotImplemented);
  EXPECT_THAT(TakeLines(), ElementsAreArray(expected));
}

TEST_F(FunctionTablesOfTarget, MakeEveryFunctionOfATargetWithoutExportsNotImplemented) {
  Prepare(EmptyTargetPath());
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  ForEachFunction([this](const char* name, auto slot) {
    EXPECT_EQ(CallWithZeros(proxy.*slot), -1003) << name;
  });
}

TEST_F(FunctionTablesOfTarget, ReportDevCloseBeforeDevGetPort) {
  const auto target =
      ScriptedTargetPath().parent_path() / "scripted_target_without_DevClose_and_DevGetPort.cti";
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  EXPECT_THAT(TakeLines(),
              ElementsAre(LoadingLine(target), kNoVersion, "ERROR DevClose not exported",
                          "ERROR DevGetPort not exported", kInitSucceeded));
}

class MissingExportTest : public LibraryFixture,
                          public ::testing::WithParamInterface<std::string> {};

TEST_P(MissingExportTest, HasOneErrorLine) {
  const std::filesystem::path target = ScriptedTargetWithout(GetParam());
  const bool hasInit = GetParam() != "GCInitLib";
  Prepare(target);
  EXPECT_EQ(proxy.GCInitLib(), hasInit ? 0 : -1003);
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(target), kNoVersion, NotExported(GetParam()),
                                       hasInit ? kInitSucceeded : kInitNotImplemented));
}

INSTANTIATE_TEST_SUITE_P(All, MissingExportTest, ::testing::ValuesIn(FunctionNames()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace vextrel_test
