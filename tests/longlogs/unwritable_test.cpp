// SPDX-License-Identifier: MIT
// A log file that never could be opened.
#include "longlogs/numbered_calls.h"

namespace vextrel_test {
namespace {

class NoLogFile : public NumberedCalls, public ::testing::WithParamInterface<const char*> {};

TEST_P(NoLogFile, LeavesTheCallsAlone) {
  const std::filesystem::path missing = Folder() / "missing" / "trace.log";
  UseAppender(GetParam(), missing);
  Start();
  Call(0, 200);
  EXPECT_FALSE(exists(missing));
}

TEST_P(NoLogFile, LeavesTheCallsAloneWhenAFolderIsInItsPlace) {
  std::filesystem::create_directory(LogFile());
  UseAppender(GetParam(), LogFile(), {"maxFileSize=1000"});
  Start();
  Call(0, 200);
  EXPECT_TRUE(is_empty(LogFile()));
}

INSTANTIATE_TEST_SUITE_P(All, NoLogFile, ::testing::Values("FileAppender", "RollingFileAppender"),
                         [](const auto& each) { return std::string(each.param); });

}  // namespace
}  // namespace vextrel_test
