// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(ListRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"devices counted before the list is made", "LIST-FIRST error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(OpenIF(kTL, "If1", kIF2));
         log.Here().Ok(NumDevices(kIF2, 0)).Ok(Close("IFClose", kIF2)).CloseAll();
       }},
      {"the update failed", "LIST-FIRST error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenIF(kTL, "If1", kIF2));
         log.Because().Fails("IO", Update("IFUpdateDeviceList", kIF2));
         log.Here().Ok(NumDevices(kIF2, 0)).Ok(Close("IFClose", kIF2)).CloseAll();
       }},
      {"the list may have been made through the port", "LIST-FIRST info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenIF(kTL, "If1", kIF2)).Ok(PortAccess("GCWritePort", kIF2, 0x20));
         log.Here().Ok(NumDevices(kIF2, 0)).Ok(Close("IFClose", kIF2)).CloseAll();
       }},
      {"counted and read as it should be", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(NumDevices(kIF, 1)).Ok(DeviceId(kIF, 0, "Cam0")).CloseAll();
       }},
      {"an id of another handle's list", "LIST-OPEN warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(OpenIF(kTL, "If1", kIF2));
         log.Here().Fails("INVALID_ID", OpenDev(kIF2, "Cam0", "CONTROL", 0));
         log.Ok(Close("IFClose", kIF2)).CloseAll();
       }},
      {"a wrong id", "",
       [](TypedLog& log) {
         log.OpenDevice().Fails("INVALID_ID", OpenDev(kIF, "Cam9", "CONTROL", 0)).CloseAll();
       }},
      {"an old list is used", "LIST-TIMEOUT warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Fails("TIMEOUT", Update("IFUpdateDeviceList", kIF));
         log.Here().Ok(NumDevices(kIF, 1)).CloseAll();
       }},
      {"an update gets 50 ms", "LIST-TIMEOUT warning",
       [](TypedLog& log) {
         log.OpenDevice().Here().Ok(Update("IFUpdateDeviceList", kIF, 50)).CloseAll();
       }},
      {"an update takes 950 of its 1000 ms", "LIST-TIMEOUT warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Enters(Update("IFUpdateDeviceList", kIF)).Pass(950);
         log.Line("Call 1 leaves IFUpdateDeviceList after 950000.000 us", "DEBUG").Here();
         log.Ok(Update("IFUpdateDeviceList", kIF)).CloseAll();
       }},
      {"an update takes 800 of its 1000 ms", "",
       [](TypedLog& log) {
         log.OpenDevice().Timed(Update("IFUpdateDeviceList", kIF), "800000.000").CloseAll();
       }},
      {"an update times out, and nobody uses the list", "",
       [](TypedLog& log) {
         log.OpenDevice().Enters(Update("IFUpdateDeviceList", kIF)).Pass(1000);
         log.Returns("TIMEOUT", Update("IFUpdateDeviceList", kIF), "1000000.000").CloseAll();
       }},
      {"an update timed out, and the next one didn't", "",
       [](TypedLog& log) {
         log.OpenDevice().Fails("TIMEOUT", Update("IFUpdateDeviceList", kIF));
         log.Ok(Update("IFUpdateDeviceList", kIF)).Ok(NumDevices(kIF, 1)).CloseAll();
       }},
      {"updated while another thread reads", "LIST-RACE warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(NumDevices(kIF, 2)).On("8");
         log.Because().Ok(Update("IFUpdateDeviceList", kIF)).On("7");
         log.Here().Ok(DeviceId(kIF, 1, "Cam1")).CloseAll();
       }},
      {"updated by another thread before it's counted", "",
       [](TypedLog& log) {
         log.OpenDevice().On("8").Ok(Update("IFUpdateDeviceList", kIF)).On("7");
         log.Ok(NumDevices(kIF, 2)).Ok(DeviceId(kIF, 1, "Cam1")).CloseAll();
       }},
      {"an index past the end", "LIST-INDEX warning",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(NumDevices(kIF, 2));
         log.Here().Fails("INVALID_PARAMETER", DeviceId(kIF, 2, "NULL")).CloseAll();
       }},
      {"an index that is there is refused", "",
       [](TypedLog& log) {
         log.OpenDevice()
             .Ok(NumDevices(kIF, 2))
             .Fails("ERROR", DeviceId(kIF, 1, "NULL"))
             .CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
