// SPDX-License-Identifier: MIT
// A full disk, and a log file that is deleted, moved or taken away while the application runs,
// which Linux allows.
#include <sys/resource.h>

#include <csignal>

#include "longlogs/numbered_calls.h"

namespace vextrel_test {
namespace {

namespace fs = std::filesystem;

// Limits the size of the files that this process writes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limited = {bytes, former_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit former_{};
  void (*handler_)(int);
};

class Appender : public NumberedCalls, public ::testing::WithParamInterface<const char*> {};

TEST_P(Appender, WithoutRoomLeavesTheCallsAlone) {
  UseAppender(GetParam(), "/dev/full");
  Start();
  Call(0, 500);
}

TEST_P(Appender, ThatReachesTheLimitGoesOnWhenThereIsRoomAgain) {
  constexpr std::size_t limitBytes = 4096;
  UseAppender(GetParam(), LogFile());
  Start();
  {
    const FileSizeLimit limit(limitBytes);
    Call(0, 200);
  }
  const std::string before = (Text(StartLines()) + Text(CallLines(0, 200))).substr(0, limitBytes);
  EXPECT_EQ(ReadFile(LogFile()), before);
  Call(200, 250);
  EXPECT_EQ(ReadFile(LogFile()), before + Text(CallLines(200, 250)));
}

TEST_P(Appender, WritesOnToAFileThatIsRenamed) {
  UseAppender(GetParam(), LogFile());
  Start();
  Call(0, 50);
  fs::rename(LogFile(), Folder() / "renamed.log");
  Call(50, 100);
  EXPECT_FALSE(exists(LogFile()));
  EXPECT_EQ(ReadFile(Folder() / "renamed.log"), Text(StartLines()) + Text(CallLines(0, 100)));
}

TEST_P(Appender, WritesOnToAFileThatIsMadeReadOnly) {
  UseAppender(GetParam(), LogFile());
  Start();
  Call(0, 50);
  fs::permissions(LogFile(), fs::perms::owner_read);
  Call(50, 100);
  EXPECT_EQ(ReadFile(LogFile()), Text(StartLines()) + Text(CallLines(0, 100)));
}

TEST_P(Appender, DoesNotMindThatItsFileIsDeleted) {
  UseAppender(GetParam(), LogFile());
  Start();
  Call(0, 50);
  fs::remove(LogFile());
  Call(50, 500);
  EXPECT_FALSE(exists(LogFile()));
}

INSTANTIATE_TEST_SUITE_P(All, Appender, ::testing::Values("FileAppender", "RollingFileAppender"),
                         [](const auto& each) { return std::string(each.param); });

// At the beginning of a file with room for ten lines, next to one backup. Any ten consecutive lines
// have the same size.
class RollingWhile : public NumberedCalls {
 protected:
  RollingWhile() {
    UseAppender(
        "RollingFileAppender", LogFile(),
        {"maxFileSize=" + std::to_string(Text(CallLines(0, 10)).size()), "maxBackupIndex=2"});
    Start();
    while (!exists(Backup(1))) {
      Call(next_, next_ + 1);
      ++next_;
    }
  }

  [[nodiscard]] fs::path Backup(int number) const {
    return LogFile().string() + "." + std::to_string(number);
  }
  // The lines that it writes.
  std::string CallTen() {
    Call(next_, next_ + 10);
    next_ += 10;
    return Text(CallLines(next_ - 10, next_));
  }

 private:
  std::uintptr_t next_ = 0;
};

TEST_F(RollingWhile, ItsFileIsDeletedFindsTheNextOne) {
  fs::remove(LogFile());
  CallTen();
  const std::string found = CallTen();
  EXPECT_EQ(ReadFile(Backup(1)), found);
  EXPECT_EQ(ReadFile(LogFile()), "");
}

TEST_F(RollingWhile, ItsFileIsRenamedFindsTheNextOne) {
  fs::rename(LogFile(), Folder() / "renamed.log");
  const std::string last = CallTen();
  EXPECT_EQ(ReadFile(Folder() / "renamed.log"), last);
  const std::string found = CallTen();
  EXPECT_EQ(ReadFile(Backup(1)), found);
}

TEST_F(RollingWhile, ItsBackupsCannotBeWrittenStaysInItsFile) {
  // A folder that is not empty can neither be removed nor replaced.
  for (const int number : {1, 2}) {
    fs::remove(Backup(number));
    fs::create_directories(Backup(number) / "inside");
  }
  std::string expected;
  for (int block = 0; block < 3; ++block) {
    expected += CallTen();
    EXPECT_EQ(ReadFile(LogFile()), expected);
  }
  fs::remove_all(Backup(1));
  fs::remove_all(Backup(2));
  expected += CallTen();
  EXPECT_EQ(ReadFile(Backup(1)) + ReadFile(LogFile()), expected);
  EXPECT_EQ(SplitLines(ReadFile(LogFile())).size(), 9U) << "the first line showed that it was full";
}

// After that log4cpp has no file and never opens another.
TEST_F(RollingWhile, ItsFolderIsTakenAwayLeavesTheCallsAlone) {
  const fs::path away = Folder().string() + ".away";
  fs::rename(Folder(), away);
  const std::string last = CallTen();
  CallTen();
  fs::rename(away, Folder());
  CallTen();
  EXPECT_EQ(ReadFile(LogFile()), last);
}

}  // namespace
}  // namespace vextrel_test
