// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

enum class Reads { BetweenWaits, Once, BySameThread };

// Twelve waits of 95 ms each 100 ms, and a read of the port beside each. `Once`: that of the sixth
// wait comes in the middle of it.
TypedLog& ReadBeside(TypedLog& log, Reads reads) {
  const std::string read = PortAccess("GCReadPort", kPort, 0x100);
  log.OpenStream(1).QueueAll().Ok(Start(kDS)).Pass(100).Here();
  for (int i = 0; i < 12; ++i) {
    log.On("8").Enters(Wait(kEvent, kBuffer)).Pass(50);
    if (reads == Reads::Once && i == 5) {
      log.On("7").Timed(read, "100.000");
    }
    log.Pass(45).On("8").Returns("SUCCESS", Wait(kEvent, kBuffer), "95000.000").Pass(1);
    log.Ok(Queue(kDS, kBuffer)).On(reads == Reads::BySameThread ? "8" : "7").Timed(read, "100.000");
    log.Pass(4);
  }
  return log.On("7").StopStream().CloseStream().CloseDevice();
}

TEST(SerialRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"a port is read between the waits only", "T-SERIAL warning",
       [](TypedLog& log) { ReadBeside(log, Reads::BetweenWaits); }},
      {"a port is read during a wait, too", "",
       [](TypedLog& log) { ReadBeside(log, Reads::Once); }},
      {"the thread that waits reads itself", "",
       [](TypedLog& log) { ReadBeside(log, Reads::BySameThread); }},
  });
}

}  // namespace
}  // namespace vextrel_test
