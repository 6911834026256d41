// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(ErrorRules, FindWhatTheyAreFor) {
  const auto fail = [](TypedLog& log) -> TypedLog& {
    return log.Fails("ERROR", Update("TLUpdateInterfaceList", kTL));
  };
  ExpectFindings({
      {"failing three times", "ERR-IGNORED warning",
       [fail](TypedLog& log) { fail(fail(fail(log.OpenDevice().Here()))).CloseAll(); }},
      {"failing twice", "", [fail](TypedLog& log) { fail(fail(log.OpenDevice())).CloseAll(); }},
      {"failing three times, and asked why", "",
       [fail](TypedLog& log) {
         fail(fail(fail(log.OpenDevice()).Ok(LastError("no")))).CloseAll();
       }},
      {"asked on another thread", "ERR-STALE info",
       [fail](TypedLog& log) {
         fail(log.OpenDevice().Because()).On("8").Here().Ok(LastError("none")).On("7").CloseAll();
       }},
      {"asked on its own thread", "",
       [fail](TypedLog& log) {
         fail(log.OpenDevice()).Ok(LastError("no")).On("8").Ok(LastError("none")).On("7");
         log.CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
