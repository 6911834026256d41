// SPDX-License-Identifier: MIT
// Output pointers that are null. A line that is written reads them without a test, which ends the
// process once the target has accepted them; a line that is not written reads nothing.
#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <vector>

#include "exports/registry_steps.h"
#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

struct NullOutput {
  std::string name;
  Step step;
};

const std::vector<NullOutput> kOpening = {
    {"TLOpenInterface", Calling(&Functions::TLOpenInterface, Handle(0x1000), "i", nullptr)},
    {"DSAnnounceBuffer",
     Calling(&Functions::DSAnnounceBuffer, Handle(0x4000), nullptr, 8U, nullptr, nullptr)},
    {"DSAllocAndAnnounceBuffer",
     Calling(&Functions::DSAllocAndAnnounceBuffer, Handle(0x4000), 8U, nullptr, nullptr)},
    {"GCRegisterEvent", Calling(&Functions::GCRegisterEvent, Handle(0x1000), 1, nullptr)},
};

// What a query of a name, a count or a handle has no room for.
const std::vector<NullOutput> kQueries = {
    {"TLGetNumInterfaces", Calling(&Functions::TLGetNumInterfaces, Handle(0x1000), nullptr)},
    {"TLGetInterfaceID",
     Calling(&Functions::TLGetInterfaceID, Handle(0x1000), 0U, nullptr, nullptr)},
    {"IFGetNumDevices", Calling(&Functions::IFGetNumDevices, Handle(0x2000), nullptr)},
    {"IFGetDeviceID", Calling(&Functions::IFGetDeviceID, Handle(0x2000), 0U, nullptr, nullptr)},
    {"DevGetPort", Calling(&Functions::DevGetPort, Handle(0x3000), nullptr)},
    {"DevGetNumDataStreams", Calling(&Functions::DevGetNumDataStreams, Handle(0x3000), nullptr)},
    {"DevGetDataStreamID",
     Calling(&Functions::DevGetDataStreamID, Handle(0x3000), 0U, nullptr, nullptr)},
    {"DSGetBufferID", Calling(&Functions::DSGetBufferID, Handle(0x4000), 0U, nullptr)},
    {"GCGetLastError", {[](const Functions& proxy) {
       GC_ERROR code = GC_ERR_ERROR;
       return proxy.GCGetLastError(&code, nullptr, nullptr);
     }}},
    {"GCGetPortURL", Calling(&Functions::GCGetPortURL, Handle(0x7000), nullptr, nullptr)},
    {"GCGetNumPortURLs", Calling(&Functions::GCGetNumPortURLs, Handle(0x7000), nullptr)},
};

class NullOutputUnlogged : public LibraryFixture {
 protected:
  NullOutputUnlogged() {
    UseTarget(ScriptedTargetPath());
    UseLogFile("WARN, file");
    LoadProxy();
    EXPECT_EQ(proxy.GCInitLib(), 0);
  }
};

TEST_F(NullOutputUnlogged, OfAnOpeningFunctionIsReportedAndRecordsNothing) {
  for (const bool isOpen : {false, true}) {
    for (const auto& [name, step] : kOpening) {
      SCOPED_TRACE(name);
      if (isOpen) {
        EXPECT_EQ(OpenTransportLayer(), 0);
      }
      EXPECT_EQ(step.call(proxy), 0);
      const char* kind = name.starts_with("DS") ? "buffer" : "interface";
      EXPECT_THAT(TakeLines(),
                  Lines(Fill("ERROR {} returned a NULL handle to the {}!", name, kind)));
      EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
      EXPECT_THAT(TakeLines(), Lines());
    }
  }
}

TEST_F(NullOutputUnlogged, OfAFailedOpeningFunctionIsNotReported) {
  const HeldTarget target;
  target.Script().result = GC_ERR_INVALID_PARAMETER;
  for (const auto& [name, step] : kOpening) {
    SCOPED_TRACE(name);
    EXPECT_EQ(step.call(proxy), -1009);
  }
  EXPECT_THAT(TakeLines(), Lines());
}

TEST_F(NullOutputUnlogged, OfAQueryIsLeftToTheTarget) {
  const HeldTarget target;
  for (const GC_ERROR result : {0, -1009}) {
    for (const auto& [name, step] : kQueries) {
      SCOPED_TRACE(name);
      target.Script().calls = 0;
      target.Script().result = result;
      EXPECT_EQ(step.call(proxy), result);
      EXPECT_EQ(target.Script().calls, 1);
    }
  }
  EXPECT_THAT(TakeLines(), Lines());
}

#if !defined(_WIN32)
// A process that is expected to crash needs a fork of its own.
using NullOutputDeathTest = ExportsTest;

TEST_F(NullOutputDeathTest, IsReadForTheLine) {
  for (const auto& [name, step] : kOpening) {
    EXPECT_DEATH(static_cast<void>(step.call(proxy)), "") << name;
  }
  for (const auto& [name, step] : kQueries) {
    EXPECT_DEATH(static_cast<void>(step.call(proxy)), "") << name;
  }
  EXPECT_DEATH(static_cast<void>(proxy.TLOpen(nullptr)), "");
  EXPECT_DEATH(static_cast<void>(proxy.DevOpenDataStream(Handle(0x3000), "s", nullptr)), "");
}

TEST_F(NullOutputDeathTest, OfAnInfoQueryIsReadForTheLine) {
  INFO_DATATYPE type = 1;
  std::size_t size = 0;
  EXPECT_DEATH(static_cast<void>(proxy.GCGetInfo(0, nullptr, nullptr, &size)), "");
  EXPECT_DEATH(static_cast<void>(proxy.GCGetInfo(0, &type, nullptr, nullptr)), "");
  EXPECT_DEATH(
      static_cast<void>(proxy.DSGetBufferInfo(Handle(1), Handle(2), 0, nullptr, nullptr, nullptr)),
      "");
}
#endif

}  // namespace
}  // namespace vextrel_test
