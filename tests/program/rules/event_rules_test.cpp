// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

constexpr unsigned kInfinite = 0xFFFFFFFF;

TEST(EventRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"registered twice", "EVT-DUP error",
       [](TypedLog& log) {
         log.OpenStream(0).Here().Fails("RESOURCE_IN_USE", Register(kDS, "NEW_BUFFER", 0));
         log.CloseAll();
       }},
      {"registered by somebody else", "EVT-DUP warning",
       [](TypedLog& log) {
         log.OpenStream(0).Here().Fails("RESOURCE_IN_USE", Register(kDS, "ERROR", 0)).CloseAll();
       }},
      {"registered again after an end of it", "",
       [](TypedLog& log) {
         log.OpenStream(0).Ok(Unregister(kDS, "NEW_BUFFER"));
         log.Ok(Register(kDS, "NEW_BUFFER", kEvent)).CloseAll();
       }},
      {"unregistered without being registered", "EVT-DUP error",
       [](TypedLog& log) {
         log.OpenStream(0).Here().Fails("NOT_INITIALIZED", Unregister(kDS, "ERROR")).CloseAll();
       }},
      {"a kill with nobody waiting", "EVT-KILL warning",
       [](TypedLog& log) {
         log.StartStream(1).Because().Ok(EventCall("EventKill", kEvent));
         log.Here().Fails("ABORT", Wait(kEvent, 0)).CloseAll();
       }},
      {"a kill that ends the wait of another thread", "",
       [](TypedLog& log) {
         log.StartStream(1).On("8").Frame(0).On("7").Ok(EventCall("EventKill", kEvent));
         log.On("8").Fails("ABORT", Wait(kEvent, 0)).On("7").CloseAll();
       }},
      {"a wait without end, and the stream is closed", "MOD-ORDER info, EVT-INF info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
         log.Fails("ABORT", Wait(kEvent, 0, kInfinite));
         log.Here().Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a wait without end that is killed", "",
       [](TypedLog& log) {
         log.StartStream(1).On("8").Ok(Wait(kEvent, kBuffer, kInfinite)).Ok(Queue(kDS, kBuffer));
         log.On("7").Ok(EventCall("EventKill", kEvent)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
