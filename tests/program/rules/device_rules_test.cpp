// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

constexpr std::uint64_t kReadOnly = 0x1000C0FF0;
constexpr std::uint64_t kReadOnlyPort = 0xC20;

TEST(DeviceRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"denied, and that was it", "DEV-DENIED error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(DeviceInfo(kIF, "Cam1", "ACCESS_STATUS", "3")).Here();
         log.Fails("ACCESS_DENIED", OpenDev(kIF, "Cam1", "EXCLUSIVE", 0));
         log.Because().Ok(LastError("no rights")).CloseAll();
       }},
      {"in use, and not by this process", "DEV-DENIED error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("RESOURCE_IN_USE", OpenDev(kIF, "Cam1", "CONTROL", 0));
         log.CloseAll();
       }},
      {"denied, and the application goes on with another one", "DEV-DENIED info",
       [](TypedLog& log) {
         log.Ok(InitLib()).Ok(OpenTL(kTL)).Ok(OpenIF(kTL, "If0", kIF)).Here();
         log.Fails("ACCESS_DENIED", OpenDev(kIF, "Cam1", "EXCLUSIVE", 0));
         log.Because().Ok(OpenDev(kIF, "Cam0", "EXCLUSIVE", kDev)).Ok(Close("DevClose", kDev));
         log.Ok(Close("IFClose", kIF)).Ok(Close("TLClose", kTL)).Ok(CloseLib());
       }},
      {"a way of opening that isn't there", "",
       [](TypedLog& log) {
         log.OpenDevice().Fails("NOT_IMPLEMENTED", OpenDev(kIF, "Cam1", "READONLY", 0)).CloseAll();
       }},
      {"written to, though only for reading", "DEV-RO-WRITE error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(OpenDev(kIF, "Cam1", "READONLY", kReadOnly));
         log.Ok(GetPort(kReadOnly, kReadOnlyPort)).Here();
         log.Fails("ACCESS_DENIED", PortAccess("GCWritePort", kReadOnlyPort, 0x100));
         log.Ok(Close("DevClose", kReadOnly)).CloseAll();
       }},
      {"only read", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDev(kIF, "Cam1", "READONLY", kReadOnly));
         log.Ok(GetPort(kReadOnly, kReadOnlyPort));
         log.Ok(PortAccess("GCReadPort", kReadOnlyPort, 0x100));
         log.Ok(PortAccess("GCWritePort", kPort, 0x100));
         log.Ok(Close("DevClose", kReadOnly)).CloseAll();
       }},
      {"unplugged", "DEV-LOST warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(PortAccess("GCReadPort", kPort, 0x100)).Here();
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x104));
         log.Fails("IO", PortAccess("GCWritePort", kPort, 0x104));
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x100)).CloseAll();
       }},
      {"unplugged, and told to stop when no frame came", "DEV-LOST warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Because();
         log.Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(5000).Because();
         log.Fails("TIMEOUT", Wait(kEvent, 0, 5000)).Here();
         log.Fails("IO", PortAccess("GCWritePort", kPort, 0x124)).StopStream().CloseAll();
       },
       "answers GC_ERR_IO, and DS1 delivers no frame any more: the device is likely gone."},
      {"unplugged, and waited for in short waits", "DEV-LOST warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Because();
         log.Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(500).Because();
         for (int i = 0; i < 4; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 500)).Pass(500);
         }
         log.Here().Fails("IO", PortAccess("GCWritePort", kPort, 0x124)).StopStream().CloseAll();
       }},
      {"refused once, but it had answered after the wait", "EVT-STORM warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(1000);
         log.Here().Fails("TIMEOUT", Wait(kEvent, 0, 1000));
         log.Ok(PortAccess("GCWritePort", kPort, 0x124));
         log.Fails("NOT_AVAILABLE", PortAccess("GCReadPort", kPort, 0x200)).StopStream().CloseAll();
       }},
      {"one access that is refused, and frames come again", "T-STALL warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(20, 30).Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(1000);
         log.Fails("TIMEOUT", Wait(kEvent, 0, 1000))
             .Fails("IO", PortAccess("GCWritePort", kPort, 8));
         log.Pass(30).Here().Frames(3, 30).CloseAll();
       }},
      {"one access that is refused", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(PortAccess("GCReadPort", kPort, 0x100));
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x104));
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x104));
         log.Ok(PortAccess("GCReadPort", kPort, 0x100)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
