// SPDX-License-Identifier: MIT
#include "commands/read_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

RecordReader ReaderOf(const ScratchFile& log, const char* pattern) {
  ReadingOptions options;
  options.files = {log.Path()};
  options.layout = Layout::OfPattern(pattern);
  return RecordReader(std::move(options));
}

TEST(ReadLog, LooksAtEachRecordAndEndsTheModel) {
  const ScratchFile log(
      "0x00)\nINFO GC_ERR_SUCCESS=GCInitLib(void)\nINFO hello\n"
      "DEBUG Call 1 enters GCCloseLib()\n");
  RecordReader reader = ReaderOf(log, "%p %m%n");
  SessionModel model(reader.UsedLayout());
  std::vector<MessageKind> kinds;
  ReadLog(reader, model, [&](const Record&, const Message& message, const Context& context) {
    kinds.push_back(message.kind);
    EXPECT_EQ(context.isOtherLine, kinds.size() == 3);
  });
  EXPECT_EQ(kinds, (std::vector<MessageKind>{MessageKind::Other, MessageKind::Call,
                                             MessageKind::Other, MessageKind::Enters}));
  EXPECT_EQ(model.Timings().NeverReturnedCount(), 1U);
}

TEST(ReadLog, RefusesALogWithoutAnyLineOfVextrel) {
  const ScratchFile log("INFO hello\nINFO world\n");
  RecordReader reader = ReaderOf(log, "%p %m%n");
  SessionModel model(reader.UsedLayout());
  try {
    ReadLog(reader, model, [](const Record&, const Message&, const Context&) {});
    FAIL() << "expected a sentence";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("has no line of Vextrel's in the layout"));
  }
}

}  // namespace
}  // namespace vextrel_test
