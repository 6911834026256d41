// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(BufferMemoryRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"a buffer of another stream", "BUF-FOREIGN error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(OpenDS(kDev, "S1", kDS2));
         log.Because().Ok(Announce(kDS, 0x10000, 0x100, kBuffer));
         log.Here().Fails("INVALID_HANDLE", Queue(kDS2, kBuffer)).Ok(Revoke(kDS, kBuffer));
         log.Ok(Close("DSClose", kDS2)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a buffer of its own stream", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(OpenDS(kDev, "S1", kDS2));
         log.Ok(Announce(kDS, 0x10000, 0x100, kBuffer)).Ok(Announce(kDS2, 0x20000, 8, 0xB80));
         log.Ok(Revoke(kDS, kBuffer)).Ok(Revoke(kDS2, 0xB80));
         log.Ok(Close("DSClose", kDS2)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"both kinds on one stream", "BUF-MIX warning",
       [](TypedLog& log) {
         log.OpenStream(1).Here().Ok(Alloc(kDS, 0x100, 0xB80)).Ok(Revoke(kDS, 0xB80)).CloseAll();
       }},
      {"each kind on its stream", "",
       [](TypedLog& log) {
         log.OpenStream(1).Ok(OpenDS(kDev, "S1", kDS2)).Ok(Alloc(kDS2, 0x100, 0xB80));
         log.Ok(Revoke(kDS2, 0xB80)).Ok(Close("DSClose", kDS2)).CloseAll();
       }},
      {"the same memory twice", "BUF-DUP warning",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS));
         log.Because().Ok(Announce(kDS, 0x10000, 0x100, kBuffer));
         log.Here().Ok(Announce(kDS, 0x100FF, 0x100, 0xB80)).Ok(Revoke(kDS, 0xB80));
         log.Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"memory side by side", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS));
         log.Ok(Announce(kDS, 0x10000, 0x100, kBuffer)).Ok(Announce(kDS, 0x10100, 0x100, 0xB80));
         log.Ok(Revoke(kDS, 0xB80)).Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
