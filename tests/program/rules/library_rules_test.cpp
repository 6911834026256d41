// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(LibraryRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"a good session", "",
       [](TypedLog& log) { log.StartStream(2).Frame(0).Pass(30).Frame(1).CloseAll(); }},
      {"used before it's initialized", "LIB-INIT error",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'")
             .Here()
             .Fails("NOT_INITIALIZED", OpenTL(0))
             .OpenDevice()
             .CloseAll();
       }},
      {"used when it's closed", "LIB-INIT error",
       [](TypedLog& log) {
         log.Ok(InitLib()).Because().Ok(CloseLib()).Here().Fails("NOT_INITIALIZED", OpenTL(0));
       }},
      {"asked for its last error when it's closed", "LIB-INIT error",
       [](TypedLog& log) {
         log.Ok(InitLib()).Because().Ok(CloseLib()).Here().Ok(LastError("no error"));
       }},
      {"the target can't be loaded", "LIB-LOAD error",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Here();
         log.Line("Error 126 when loading the GenTL producer dll: '/opt/a.cti'", "ERROR");
         log.Fails("NOT_IMPLEMENTED", OpenTL(0));
       },
       "The producer '/opt/a.cti' can't be loaded, error 126: it isn't there, or a library that it "
       "needs is missing."},
      {"an error of the loader that has no sentence", "LIB-LOAD error",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Here();
         log.Line("Error 4711 when loading the GenTL producer dll: '/opt/a.cti'", "ERROR");
         log.Fails("NOT_IMPLEMENTED", OpenTL(0));
       },
       "can't be loaded, error 4711."},
      {"the target is Vextrel", "LIB-LOAD error",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Here();
         log.Line("The GenTL producer dll is Vextrel itself: '/opt/a.cti'", "ERROR");
         log.Fails("NOT_IMPLEMENTED", OpenTL(0));
       },
       "GENICAM_GENTL64_VEXTREL_PRODUCER leads to Vextrel itself: '/opt/a.cti'."},
      {"no target is named", "LIB-LOAD error",
       [](TypedLog& log) {
         log.Here().Line("Vextrel Environment variable GENICAM_GENTL64_VEXTREL_PRODUCER not found!",
                         "ERROR");
         log.Fails("NOT_IMPLEMENTED", OpenTL(0));
       }},
      {"the target fails to start", "LIB-INIT error",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Here().Fails("ERROR", InitLib());
       }},
      {"refused though it's initialized", "LIB-INIT warning",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("NOT_INITIALIZED", NumDevices(kIF, 0)).CloseAll();
       }},
      {"a log that begins late says nothing of it", "",
       [](TypedLog& log) {
         log.Ok(Update("TLUpdateInterfaceList", kTL)).Ok(NumInterfaces(kTL, 1));
       }},
      {"initialized twice", "LIB-PAIR warning",
       [](TypedLog& log) {
         log.Because().OpenDevice().Here().Fails("RESOURCE_IN_USE", InitLib()).CloseAll();
       }},
      {"initialized twice, and the producer is loaded twice", "LIB-PAIR warning",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Because().OpenDevice();
         log.Line("Loading GenTL Producer '/opt/a.cti'");
         log.Line("GenTL producer file version: '1.2.3.4'");
         log.Line("GCInitLib() has already been called!", "ERROR");
         log.Here().Fails("RESOURCE_IN_USE", InitLib()).CloseAll();
       }},
      {"a process dies, and the next one has the same thread id", "MOD-LEAK warning",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Ok(InitLib()).Here().Ok(OpenTL(kTL));
         log.Line("Loading GenTL Producer '/opt/a.cti'");
         log.Line("GenTL producer file version: '1.2.3.4'").OpenDevice().CloseAll();
       }},
      {"a call when the library is closed", "LIB-INIT error",
       [](TypedLog& log) {
         log.Ok(InitLib()).Because().Ok(CloseLib()).Here().Fails("NOT_IMPLEMENTED", OpenTL(0));
       }},
      {"a question that the closed library may be asked", "",
       [](TypedLog& log) {
         log.Ok(InitLib()).Ok(CloseLib());
         log.Fails("NOT_IMPLEMENTED",
                   "GCGetInfo(iInfoCmd=TL_INFO_VENDOR, "
                   "0x000000000000F000->(iType=INFO_DATATYPE_STRING), Buffer='V', "
                   "0x000000000000F008->(iSize=2))");
       }},
      {"never closed", "LIB-PAIR warning",
       [](TypedLog& log) {
         log.Because().Ok(InitLib()).Ok(OpenTL(kTL)).Here().Ok(Close("TLClose", kTL));
       }},
      {"two sessions, each closed", "",
       [](TypedLog& log) { log.OpenDevice().CloseAll().OpenDevice().CloseAll(); }},
  });
}

}  // namespace
}  // namespace vextrel_test
