// SPDX-License-Identifier: MIT
// A log file that can't be written or renamed while the application runs, which Windows allows.
#include <windows.h>

#include <fstream>

#include "longlogs/numbered_calls.h"

namespace vextrel_test {
namespace {

namespace fs = std::filesystem;

class Appender : public NumberedCalls, public ::testing::WithParamInterface<const char*> {};

TEST_P(Appender, KeepsItsFileFromBeingDeletedOrRenamed) {
  UseAppender(GetParam(), LogFile());
  Start();
  Call(0, 50);
  std::error_code error;
  EXPECT_FALSE(fs::remove(LogFile(), error));
  fs::rename(LogFile(), Folder() / "renamed.log", error);
  EXPECT_TRUE(error);
  Call(50, 100);
  EXPECT_EQ(ReadFile(LogFile()), Text(StartLines()) + Text(CallLines(0, 100)));
}

TEST_P(Appender, WritesOnToAFileThatIsMadeReadOnly) {
  UseAppender(GetParam(), LogFile());
  Start();
  Call(0, 50);
  fs::permissions(LogFile(), fs::perms::owner_read);
  Call(50, 100);
  fs::permissions(LogFile(), fs::perms::all);
  EXPECT_EQ(ReadFile(LogFile()), Text(StartLines()) + Text(CallLines(0, 100)));
}

// A pipe stands for a file that takes no more: each write fails once the reader is gone.
TEST_P(Appender, WhoseWritesFailLeavesTheCallsAlone) {
  const std::string name = "\\\\.\\pipe\\vextrel-test-" + std::to_string(ProcessId());
  HANDLE pipe = ::CreateNamedPipeA(name.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE | PIPE_NOWAIT,
                                   1, 0, 1 << 16, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  UseAppender(GetParam(), name);
  Start();
  Call(0, 50);
  std::string read(1 << 16, '\0');
  DWORD count = 0;
  ::ReadFile(pipe, read.data(), static_cast<DWORD>(read.size()), &count, nullptr);
  read.resize(count);
  std::erase(read, '\r');
  EXPECT_EQ(read, Text(StartLines()) + Text(CallLines(0, 50)));
  ::CloseHandle(pipe);
  Call(50, 500);
}

INSTANTIATE_TEST_SUITE_P(All, Appender, ::testing::Values("FileAppender", "RollingFileAppender"),
                         [](const auto& each) { return std::string(each.param); });

// While somebody has the file open, it can't become a backup: it grows past its limit, and rolls
// when it is closed.
class Viewed : public NumberedCalls {};

TEST_F(Viewed, RollingFileStaysUntilItCanBeRenamed) {
  UseAppender("RollingFileAppender", LogFile(), {"maxFileSize=2000", "maxBackupIndex=2"});
  Start();
  {
    const std::ifstream viewer(LogFile());
    ASSERT_TRUE(viewer.is_open());
    Call(0, 200);
    EXPECT_EQ(ReadFile(LogFile()), Text(StartLines()) + Text(CallLines(0, 200)));
  }
  Call(200, 201);
  EXPECT_EQ(ReadFile(LogFile().string() + ".1"), Text(StartLines()) + Text(CallLines(0, 201)));
  Call(201, 205);
  EXPECT_EQ(ReadFile(LogFile()), Text(CallLines(201, 205)));
}

}  // namespace
}  // namespace vextrel_test
